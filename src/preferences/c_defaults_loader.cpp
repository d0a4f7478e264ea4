#include "preferences/c_defaults_loader.h"

#include "text/blanks.h"

namespace genutil {

bool cDefaultsLoader::LoadDefaultsForm(const RecordPtr& IHelp, RecordPtr& prog, const RecordPtr& currentJob,
    const RecordPtr& mainForm, RecordPtr& genPrefs, RecordPtr& LSOptPrefs) {
    return run(
        "LoadDefaultsForm",
        [&] {
            bool accepted = false, workingCopy = false;
            const auto prepare = [&](frmDefaults& form) {
                const bool isHelpOn = required(IHelp, "IHelp").get(instanthelp::InstantHelpOn);
                form.modal = 1;
                form.MenuIhelp = isHelpOn;
                form.genPrefs = required(genPrefs, "genPrefs").Clone();
                form.LSOptPrefs = required(LSOptPrefs, "LSOptPrefs").Clone();
                form.prog = required(prog, "prog").Clone();
                form.JobPath = currentJob ? currentJob->get(job::JobPath) : std::string();
                form.chkInstantHelp.ticked = isHelpOn;
            };
            const auto collect = [&](frmDefaults& form) {
                accepted = form.OKPressed;
                if (accepted) {
                    storeSettings(form, IHelp, prog, currentJob, workingCopy);
                    showInstantHelp(*IHelp, mainForm, form.instantHelpChosen);
                    genPrefs = form.genPrefs->Clone();
                }
                if (form.LSOptionsSaved)
                    LSOptPrefs = form.LSOptPrefs->Clone();
                if (form.prog->get(program::Changed))
                    prog = form.prog->Clone();
            };
            try {
                load(
                    prepare, [&](frmDefaults& form) { form.Form_Setup(prog->get(program::HelpSource)); },
                    collect);
            } catch (...) {
                if (workingCopy)
                    destroyWorkingCopy(*prog);
                throw;
            }
            return accepted;
        },
        "Function");
}

void cDefaultsLoader::showInstantHelp(Record& IHelp, const RecordPtr& mainForm, bool isOn) {
    IHelp.put(instanthelp::InstantHelpOn, isOn);
    const RecordPtr mark = required(mainForm, "mainForm").child(mainform::mnuHelpInstantHelp);
    required(mark, mainform::mnuHelpInstantHelp).put(mainform::Checked, isOn);
}

// What fails here is reported for itself: the caller is to see the error that came first.
void cDefaultsLoader::destroyWorkingCopy(const Record& prog) {
    try {
        component().files().wipeFile(prog.get(program::SettingsWorkFile));
    } catch (...) {
        reportEvent(component(), qualifiedName("LoadDefaultsForm", "Function"));
    }
}

void cDefaultsLoader::storeSettings(const frmDefaults& form, const RecordPtr& IHelp, const RecordPtr& prog,
    const RecordPtr& currentJob, bool& workingCopy) {
    const auto store = component().objects().createSettingsStore();
    bool storeFlag = false;
    if (!store->OpenSettingsStore(prog, storeFlag, workingCopy))
        return;
    const std::string programPath =
        component().genProcs().ReadSetting(form.prog->get(program::SettingsWorkFile),
            store->ProgramSectionName(), "ProgPath", "", true, storeFlag);
    bool programChanged = form.prog->get(program::Changed);
    store->SaveAllSettings({.programChanged = programChanged,
                               .programPathMissing = text::isBlank(programPath),
                               .preferences = true,
                               .options = form.LSOptionsSaved},
        form.prog, currentJob, IHelp, form.genPrefs, form.LSOptPrefs, storeFlag);
    // The store's status is what the program object says of itself. The last argument comes back True once
    // the working copy has taken the place of the settings.
    store->CloseSettingsStore(prog, storeFlag, form.prog->get(program::Changed), programChanged);
    workingCopy = !programChanged;
}

} // namespace genutil
