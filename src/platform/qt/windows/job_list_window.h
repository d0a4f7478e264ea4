#pragma once

#include "joblist/frm_job_list.h"
#include "platform/qt/form/form_window.h"

namespace genutil {

// The job list: above the grid, which takes the room there is, the filter or how far reading has come, and
// below it the buttons.
class JobListWindow : public FormWindow {
public:
    explicit JobListWindow(const std::shared_ptr<frmJobList>& form);
};

} // namespace genutil
