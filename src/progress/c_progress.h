#pragma once

#include "frame/loader.h"
#include "progress/frm_progress.h"

#include <cstdint>
#include <memory>
#include <string>

namespace genutil {

// Drives a gauge window over a host's long computation: GaugeSetup opens it, Gauge advances it, GaugeRemove
// closes it.
class cProgress : public LoaderBase {
public:
    explicit cProgress(Component& component) : LoaderBase(component, "cProgress") {}
    // Closes the window.
    ~cProgress();

    // A second set-up without GaugeRemove opens a second window; the first stays open and is no longer
    // driven.
    void GaugeSetup(const std::string& title, const std::string& incrLabel);
    // Fills the bar to perCent when that is 1 to 100 and above the previous call's; shows incrNo unless it is
    // empty. Pending window events run when the bar moves. Throws ObjectNotSet before GaugeSetup.
    void Gauge(const std::string& incrNo, std::int16_t perCent);
    // Without a gauge it does nothing.
    void GaugeRemove();

    const std::shared_ptr<frmProgress>& form() const { return form_; }

private:
    std::shared_ptr<frmProgress> form_;
    std::int16_t lastPercentage_ = 0; // kept over GaugeSetup
};

} // namespace genutil
