#include "lsoptions/c_ls_opts_loader.h"

namespace genutil {
namespace {

// What both dialogs are given and give back.
template<class FormType>
void prepare(FormType& form, std::int16_t mode, bool optionsSaved, const RecordPtr& LSOptPref,
    const RecordPtr& LSOptPrefDefaults, const RecordPtr& prog) {
    form.modal = 1;
    form.NewRecordSaved = optionsSaved;
    form.LSOptionsMode = mode;
    form.LSOptPref = required(LSOptPref, "LSOptPref").Clone();
    if (LSOptPrefDefaults)
        form.LSOptPrefDefaults = LSOptPrefDefaults->Clone();
    form.programFolder = required(prog, "prog").get(program::ProgramFolder);
}

template<class FormType>
void collect(const FormType& form, bool& optionsSaved, RecordPtr& LSOptPref) {
    optionsSaved = form.NewRecordSaved;
    if (optionsSaved)
        LSOptPref = form.LSOptPref->Clone();
}

} // namespace

void cLS_OptsLoader::LoadLSOptionsForm(bool instantHelp, std::int16_t optionsMode, bool& optionsSaved,
    RecordPtr& LSOptPref, const RecordPtr& prog, const std::shared_ptr<Recordset>& dataHeaderTable,
    const RecordPtr& LSOptPrefDefaults, std::int16_t dataNumMode) {
    run("LoadLSOptionsForm", [&] {
        load(
            [&](frmLS_Options& form) {
                form.MenuIhelp = instantHelp;
                form.DataMode = dataNumMode;
                prepare(form, optionsMode, optionsSaved, LSOptPref, LSOptPrefDefaults, prog);
            },
            [&](frmLS_Options& form) {
                form.Form_Setup(prog->get(program::HelpSource),
                    optionsMode == lsmode::OptionSet ? nullptr : dataHeaderTable);
            },
            [&](frmLS_Options& form) { collect(form, optionsSaved, LSOptPref); });
    });
}

void cLS_SaveOptsLoader::LoadLSSaveOptsForm(std::int16_t optionsMode, bool& optionsSaved,
    RecordPtr& LSOptPref, const RecordPtr& prog, const std::shared_ptr<Recordset>& dataHeaderTable,
    const RecordPtr& LSOptPrefDefaults) {
    run("LoadLSSaveOptsForm", [&] {
        load(
            [&](frmLS_SaveOptions& form) {
                prepare(form, optionsMode, optionsSaved, LSOptPref, LSOptPrefDefaults, prog);
            },
            [&](frmLS_SaveOptions& form) {
                form.Form_Setup(optionsMode == lsmode::OptionSet ? nullptr : dataHeaderTable);
            },
            [&](frmLS_SaveOptions& form) { collect(form, optionsSaved, LSOptPref); });
    });
}

} // namespace genutil
