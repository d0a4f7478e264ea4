#include "frame/dialog_form.h"

#include "hostif/controls.h"

namespace genutil {
namespace {

// What the user has chosen and typed, in one text.
std::string stateOf(const Form& form) {
    std::string state;
    for (const Control* control : form.controls()) {
        if (const auto* box = dynamic_cast<const TextBox*>(control))
            state += box->text.get();
        else if (const auto* check = dynamic_cast<const CheckBox*>(control))
            state += check->ticked ? '1' : '0';
        else if (const auto* option = dynamic_cast<const OptionButton*>(control))
            state += option->selected ? '1' : '0';
        state += '\n';
    }
    return state;
}

} // namespace

DialogForm::DialogForm(
    Component& component, std::string name, std::string shortName, std::string text, WindowChrome chrome)
    : Form(component.desktop(), std::move(name), std::move(text), chrome), component_(component),
      shortName_(std::move(shortName)) {
    on(activate, "Form_Activate", [this] {
        instantHelpActive_ = MenuIhelp;
        if (instantHelpActive_ && instantHelp_)
            instantHelp_->ShowFormHelp(*this);
    });
    on(deactivate, "Form_Deactivate", [this] { instantHelpActive_ = false; });
    on(mouseMove, "Form_MouseMove", [this] {
        if (instantHelpActive_ && instantHelp_)
            instantHelp_->ShowFormHelp(*this);
    });
}

std::string DialogForm::qualifiedName(std::string_view procedureName, std::string_view kind) const {
    return ("(Form) " + shortName_ + "::").append(kind).append(" ").append(procedureName);
}

void DialogForm::setUpKeysAndHelp(const HelpTopics& topics, const std::string& helpSource) {
    keyPreview = true;
    helpContextId = topics.context;
    instantHelp_ = component_.objects().createInstantHelp();
    instantHelp_->SetupHelp(
        *this, topics.first, topics.last, topics.firstShared, topics.lastShared, helpSource);
    unloaded.connect([this] { instantHelp_.reset(); });
}

void DialogForm::followMouse(std::initializer_list<Control*> controls) {
    for (Control* control : controls)
        on(control->mouseMove, control->name() + "_MouseMove", [this, control] {
            if (instantHelpActive_ && instantHelp_)
                instantHelp_->ShowControlHelp(*this, *control);
        });
}

void DialogForm::openHelpOnF1(std::function<std::string()> programFolder) {
    on(keyDown, "Form_KeyDown", [this, folder = std::move(programFolder)](KeyEvent& event) {
        if (event.code != key::F1)
            return;
        // Consumed before the help is tried, so that a failing help file does not let the key through.
        event.code = 0;
        component_.genProcs().ShowHelpFile(*this, folder());
    });
}

void DialogForm::moveOnEnter() {
    on(keyPress, "Form_KeyPress", [this](KeyEvent& event) {
        if (event.code != key::Enter)
            return;
        event.code = 0;
        component_.genProcs().NextControl(*this);
    });
}

void DialogForm::toggleOnSpace() {
    on(keyDown, "Form_KeyDown", [this](KeyEvent& event) {
        auto* const check = dynamic_cast<CheckBox*>(activeControl());
        if (event.code != key::Space || !check || !check->name().starts_with("chk"))
            return;
        event.code = 0;
        if (!event.repeated)
            check->userToggle();
    });
}

void DialogForm::askOnLeaving(Button& save, Button& discard, std::function<bool()> isChanged) {
    on(keyDown, "Form_KeyDown", [this, &save, &discard](KeyEvent& event) {
        if (event.code != key::Escape)
            return;
        event.code = 0;
        if (event.repeated) // the key that has just answered the question
            return;
        leaveAsAnswered(save, discard);
    });
    on(queryUnload, "Form_QueryUnload",
        [this, &save, &discard, changed = std::move(isChanged)](bool& refused, UnloadReason reason) {
            if (reason != UnloadReason::Ending || (stateOf(*this) == shownState_ && !changed()))
                return;
            leaveAsAnswered(save, discard);
            refused = isLoaded() && isShown();
        });
}

void DialogForm::leaveAsAnswered(Button& save, Button& discard) {
    const Answer answer = component_.desktop().ask({.text = "Save changes on exit?",
        .icon = Icon::Question,
        .buttons = Buttons::YesNoCancel,
        .defaultAnswer = Answer::Yes});
    if (answer == Answer::Yes)
        save.userPress();
    else if (answer == Answer::No)
        discard.userPress();
}

void DialogForm::showAsSetUp() {
    component_.desktop().setPointer(Pointer::Default);
    shownState_ = stateOf(*this);
    show(modal == 1);
}

} // namespace genutil
