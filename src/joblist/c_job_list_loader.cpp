#include "joblist/c_job_list_loader.h"

#include "joblist/job_errors.h"
#include "text/blanks.h"

namespace genutil {
namespace {

std::string fullName(const RecordPtr& job) {
    return job ? job->get(job::JobFullName) : std::string();
}

} // namespace

bool cJobListLoader::LoadJobListForm(const RecordPtr& jobSelected, const RecordPtr& IHelp,
    const RecordPtr& prog, const CurrentJob& current, const RecordPtr& mainForm, bool showExt) {
    return run(
        "LoadJobListForm",
        [&] {
            required(jobSelected, "jobSelected");
            bool chosen = false;
            load(
                [&](frmJobList& form) {
                    prepare(form, IHelp, required(prog, "prog"), current, mainForm, showExt);
                },
                [&](frmJobList& form) { form.Form_Setup(prog->get(program::HelpSource)); },
                [&](frmJobList& form) {
                    if (!form.jobChanged || fullName(current.job) == fullName(form.thisJob))
                        return;
                    jobSelected->CopyFrom(*form.thisJob);
                    chosen = true;
                });
            return chosen;
        },
        "Function");
}

void cJobListLoader::prepare(frmJobList& form, const RecordPtr& IHelp, const Record& prog,
    const CurrentJob& current, const RecordPtr& mainForm, bool showExt) {
    form.modal = 1;
    form.MenuIhelp = required(IHelp, "IHelp").get(instanthelp::InstantHelpOn);
    form.programFolder = prog.get(program::ProgramFolder);
    form.settingsFile = prog.get(program::SettingsFile);
    form.thisJob = component().objects().createRecord("job");
    if (current.job) {
        const std::string name = current.job->get(job::JobName);
        const std::string extension = current.job->get(job::JobExtension);
        form.thisJob->CopyFrom(*current.job);
        form.currentJobFile = name + extension;
        form.table.addJob();
        form.table.AssignSingleJob(name, extension, current.jobDB, current.jobDetailsRset, current.jobDetails,
            current.jobCfg, current.jobGeneral, true);
    } else {
        form.thisJob->put(job::JobPath,
            text::trimBlanks(component().genProcs().ReadSetting(form.settingsFile,
                component().regInfo().SettingsSection(), program::DataPath.name, "", true, false)));
    }
    form.showExt = showExt;
    placeForm(form, required(mainForm, "mainForm"));
}

// Over the host's plot, or in the middle of the screen when the host fills it.
void cJobListLoader::placeForm(frmJobList& form, const Record& mainForm) {
    constexpr std::int16_t maximised = 2;
    constexpr double gapBelow = 80;
    constexpr double gapBesideExit = 180;
    if (mainForm.get(mainform::windowState) == maximised) {
        const Screen screen = component().desktop().screen();
        form.width = 0.9 * screen.width;
        form.top = (screen.height - form.height) / 2;
        form.left = (screen.width - form.width) / 2;
    } else {
        const RecordPtr plot = mainForm.child(mainform::picPlot);
        const RecordPtr container = mainForm.child(mainform::picContainer);
        form.width = required(plot, mainform::picPlot).get(mainform::Width);
        form.height = plot->get(mainform::Height);
        form.top = mainForm.get(mainform::Top) + mainForm.get(mainform::Height) -
                   required(container, mainform::picContainer).get(mainform::Height) - form.height - gapBelow;
        form.left = mainForm.get(mainform::Left) + (mainForm.get(mainform::Width) - form.width) / 2;
    }
    form.cmdExit.left = form.width - form.cmdExit.width - gapBesideExit;
}

} // namespace genutil
