#include "progress/c_progress.h"

#include <utility>

namespace genutil {

cProgress::~cProgress() {
    ClassActive = false;
    GaugeRemove();
}

void cProgress::GaugeSetup(const std::string& title, const std::string& incrLabel) {
    run("GaugeSetup", [&] {
        form_ = std::make_shared<frmProgress>(component());
        const auto form = form_;
        form->Modal = 0;
        form->layOut(title, incrLabel);
        form->Form_Setup();
        if (form->Modal == 1)
            form_.reset();
    });
}

void cProgress::Gauge(const std::string& incrNo, std::int16_t perCent) {
    run("Gauge", [&] {
        const auto form = form_; // pending events may remove the gauge
        if (!form)
            throw Error(errors::ObjectNotSet, "No gauge is set up");
        Desktop& desktop = component().desktop();
        if (perCent >= 1 && perCent <= 100 && perCent > lastPercentage_) {
            form->pnlGauge.floodPercent = perCent;
            desktop.doEvents();
        }
        lastPercentage_ = perCent;
        if (!incrNo.empty()) {
            form->lblValue.caption = incrNo;
            desktop.repaint(form->lblValue);
        }
        desktop.bringToFront(*form);
    });
}

void cProgress::GaugeRemove() {
    run("GaugeRemove", [&] {
        try {
            if (const auto form = std::exchange(form_, nullptr)) {
                form->unload();
                component().desktop().doEvents();
            }
        } catch (...) {
            // Removing a gauge that cannot be removed must not fail the computation that has ended.
        }
    });
}

} // namespace genutil
