#pragma once

#include "frame/loader.h"
#include "preferences/frm_defaults.h"

namespace genutil {

// Shows the preferences for the host, and stores what the user has chosen.
class cDefaultsLoader : public FormLoader<frmDefaults> {
public:
    explicit cDefaultsLoader(Component& component) : FormLoader(component, "cDefaultsLoader") {}

    // True when the user accepted: the settings are stored, and `genPrefs` is a copy of what was edited.
    // `LSOptPrefs` is replaced where a dialog of options saved them, `prog` where its copy says that it has
    // changed. `currentJob` may be null. When the settings cannot be stored, their working copy is destroyed
    // and the error goes to the caller; nothing is handed back then.
    bool LoadDefaultsForm(const RecordPtr& IHelp, RecordPtr& prog, const RecordPtr& currentJob,
        const RecordPtr& mainForm, RecordPtr& genPrefs, RecordPtr& LSOptPrefs);

private:
    static void showInstantHelp(Record& IHelp, const RecordPtr& mainForm, bool isOn);
    void destroyWorkingCopy(const Record& prog);
    // `workingCopy` says whether a working copy of the settings is left behind when this throws.
    void storeSettings(const frmDefaults& form, const RecordPtr& IHelp, const RecordPtr& prog,
        const RecordPtr& currentJob, bool& workingCopy);
};

} // namespace genutil
