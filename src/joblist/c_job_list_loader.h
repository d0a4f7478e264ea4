#pragma once

#include "frame/loader.h"
#include "joblist/frm_job_list.h"

#include <memory>

namespace genutil {

// What the host knows of its current job; without a job nothing else is used.
struct CurrentJob {
    RecordPtr job, jobDetails, jobCfg, jobGeneral;
    std::shared_ptr<Database> jobDB;
    std::shared_ptr<Recordset> jobDetailsRset;
};

// Shows the job list for the host.
class cJobListLoader : public FormLoader<frmJobList> {
public:
    explicit cJobListLoader(Component& component) : FormLoader(component, "cJobListLoader") {}

    // Lists the jobs of the current job's folder, or of the data folder in the settings when there is none.
    // True when the user has chosen another job than the current one; `jobSelected` then describes it, and is
    // untouched otherwise.
    bool LoadJobListForm(const RecordPtr& jobSelected, const RecordPtr& IHelp, const RecordPtr& prog,
        const CurrentJob& current, const RecordPtr& mainForm, bool showExt);

private:
    void prepare(frmJobList& form, const RecordPtr& IHelp, const Record& prog, const CurrentJob& current,
        const RecordPtr& mainForm, bool showExt);
    void placeForm(frmJobList& form, const Record& mainForm);
};

} // namespace genutil
