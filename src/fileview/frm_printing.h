#pragma once

#include "frame/dialog_form.h"
#include "hostif/controls.h"

#include <chrono>
#include <cstddef>
#include <string>

namespace genutil {

// Says how far a long print run is, and cancels it. Lengths are twips.
class frmPrinting : public DialogForm {
public:
    frmPrinting(Component& component, const std::string& file);

    Label lblFile;
    Label lblPage;
    FloodGauge gauPages;
    Button cmdCancel;

    // Called before each page. Appears once the run has taken half a second; every other window waits from
    // then on. False once the user has cancelled.
    bool goesOn(std::size_t done, std::size_t total);
    // The run has ended.
    void end();

    // How long a run may take before the form appears; and how often it then shows where the run is.
    std::chrono::milliseconds patience{500};
    std::chrono::milliseconds turn{100};

private:
    std::chrono::steady_clock::time_point since_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point nextTurn_;
    bool cancelled_ = false;
    bool ended_ = false;
};

} // namespace genutil
