#pragma once

#include "frame/loader.h"
#include "lsoptions/frm_ls_options.h"
#include "lsoptions/frm_ls_save_options.h"

#include <memory>

namespace genutil {

// Shows the least-squares options for the host.
class cLS_OptsLoader : public FormLoader<frmLS_Options> {
public:
    explicit cLS_OptsLoader(Component& component) : FormLoader(component, "cLS_OptsLoader") {}

    // Edits the option set (mode 1) or a record of the table (modes 2 to 4; `dataNumMode` selects the page of
    // mode 2). `optionsSaved` becomes True when something was saved; `LSOptPref` is then replaced by a copy
    // of the edited set. The table and the defaults may be null.
    void LoadLSOptionsForm(bool instantHelp, std::int16_t optionsMode, bool& optionsSaved,
        RecordPtr& LSOptPref, const RecordPtr& prog, const std::shared_ptr<Recordset>& dataHeaderTable,
        const RecordPtr& LSOptPrefDefaults, std::int16_t dataNumMode);
};

// Shows the options for saving adjusted network points.
class cLS_SaveOptsLoader : public FormLoader<frmLS_SaveOptions> {
public:
    explicit cLS_SaveOptsLoader(Component& component) : FormLoader(component, "cLS_SaveOptsLoader") {}

    // Edits the option set (mode 1) or the header record (mode 4), with the same results.
    void LoadLSSaveOptsForm(std::int16_t optionsMode, bool& optionsSaved, RecordPtr& LSOptPref,
        const RecordPtr& prog, const std::shared_ptr<Recordset>& dataHeaderTable,
        const RecordPtr& LSOptPrefDefaults);
};

} // namespace genutil
