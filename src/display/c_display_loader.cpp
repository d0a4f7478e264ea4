#include "display/c_display_loader.h"

namespace genutil {
namespace {

// An object of the main window, by its name.
RecordPtr partOf(const Record& mainForm, const char* name) {
    RecordPtr part = mainForm.child(name);
    required(part, name);
    return part;
}

// The boxes' handlers run as they are filled, so the rules of the labels and of the scale bar hold from the
// start.
void loadBoxes(frmDisplay& form, const Record& mainForm) {
    form.SetupPoints();
    for (std::size_t i = 0; i < form.boxes.size(); ++i) {
        CheckBox& box = form.boxes[i];
        const bool mustBeClear = (&box == &form.chkScaleBar && form.chkPlotGeog.ticked) ||
                                 (&box == &form.chkZoneBdys && !box.enabled);
        box.ticked = !mustBeClear && partOf(mainForm, displayBoxes()[i].menuItem)->get(mainform::Checked);
    }
    form.allowScaleBar();
}

void writeBoxes(const frmDisplay& form, const Record& mainForm) {
    std::vector<RecordPtr> items;
    for (const DisplayBox& box : displayBoxes())
        items.push_back(partOf(mainForm, box.menuItem));
    const RecordPtr scaleBar = partOf(mainForm, mainform::picScaleBar);
    for (std::size_t i = 0; i < items.size(); ++i) {
        const CheckBox& box = form.boxes[i];
        if (&box == &form.chkZoneBdys)
            scaleBar->put(mainform::Visible, !form.chkPlotGeog.ticked && form.chkScaleBar.ticked);
        items[i]->put(mainform::Checked, box.ticked);
    }
}

} // namespace

bool cDisplayLoader::LoadDisplaySettingsForm(const RecordPtr& IHelp, const RecordPtr& mainForm,
    const RecordPtr& prog, const RecordPtr& jobCfg, const RecordPtr& jobGeneral, bool alphasExist) {
    return run(
        "LoadDisplaySettingsForm",
        [&] {
            bool accepted = false;
            load(
                [&](frmDisplay& form) {
                    form.modal = 1;
                    form.MenuIhelp = required(IHelp, "IHelp").get(instanthelp::InstantHelpOn);
                    form.prog = required(prog, "prog").Clone();
                    enableBoxes(form, jobCfg, jobGeneral, alphasExist);
                    loadBoxes(form, required(mainForm, "mainForm"));
                },
                [&](frmDisplay& form) { form.Form_Setup(prog->get(program::HelpSource)); },
                [&](frmDisplay& form) {
                    form.prog.reset();
                    if (form.OKPressed)
                        writeBoxes(form, *mainForm);
                    accepted = form.OKPressed;
                });
            return accepted;
        },
        "");
}

void cDisplayLoader::enableBoxes(
    frmDisplay& form, const RecordPtr& jobCfg, const RecordPtr& jobGeneral, bool alphasExist) {
    constexpr std::size_t alphaIds = 2, undulations = 6, deflections = 7;
    const Record& configuration = required(jobCfg, "jobCfg");
    const bool isGeodetic = configuration.get(jobcfg::GeodeticDisplays);
    form.chkPoints(alphaIds).enabled = alphasExist;
    form.chkPoints(undulations).enabled = isGeodetic;
    form.chkPoints(deflections).enabled = isGeodetic;
    form.chkPlotGeog.enabled = isGeodetic && !configuration.get(jobcfg::NoLinearScale);
    form.chkZoneBdys.enabled = isGeodetic;
    GeneralProcedures& genProcs = component().genProcs();
    form.chkGeoid.enabled =
        genProcs.GeoidFileDefined(jobCfg) || genProcs.JobUsesGeoid(jobCfg, jobGeneral, false);
}

} // namespace genutil
