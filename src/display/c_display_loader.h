#pragma once

#include "display/frm_display.h"
#include "frame/loader.h"

namespace genutil {

// Shows the display settings for the host.
class cDisplayLoader : public FormLoader<frmDisplay> {
public:
    explicit cDisplayLoader(Component& component) : FormLoader(component, "cDisplayLoader") {}

    // What the user chose goes to the check marks of the main window's View menu and to the visibility of its
    // scale bar; they stay as they are after Cancel, which gives False. `jobGeneral` may be null. A member
    // that the main window lacks: the host's error, or ObjectNotSet, naming it; nothing has been written
    // then.
    bool LoadDisplaySettingsForm(const RecordPtr& IHelp, const RecordPtr& mainForm, const RecordPtr& prog,
        const RecordPtr& jobCfg, const RecordPtr& jobGeneral, bool alphasExist);

private:
    void enableBoxes(
        frmDisplay& form, const RecordPtr& jobCfg, const RecordPtr& jobGeneral, bool alphasExist);
};

} // namespace genutil
