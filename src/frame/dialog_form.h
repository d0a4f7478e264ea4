#pragma once

#include "frame/component.h"
#include "frame/error_boundary.h"
#include "hostif/form.h"
#include "hostif/program.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

namespace genutil {

class Button;

// The numbers that a form passes to its instant-help object.
struct HelpTopics {
    int context;     // the form's own topic
    int first, last; // its controls' topics
    int firstShared, lastShared;
};

// What all dialog forms share: modality, instant help that follows activation and the mouse, F1, key preview,
// the names of procedures in error reports, and what is released on closing. A form states only its own
// values.
class DialogForm : public Form {
public:
    // 1: shown modally, 0: modelessly. Set by the loader.
    std::int16_t modal = 0;
    // The host's request that instant help be on. Set by the loader.
    bool MenuIhelp = false;

    const std::string& shortName() const { return shortName_; }
    // "(Form) Fileview::Sub Form_Setup" and the like; kind is "Sub", "Function", "Property Get" or "Property
    // Let".
    std::string qualifiedName(std::string_view procedureName, std::string_view kind = "Sub") const;

protected:
    // `shortName` names the form in error reports.
    DialogForm(Component& component, std::string name, std::string shortName, std::string caption,
        WindowChrome chrome = {});

    Component& component() const { return component_; }

    // Runs a procedure or a handler of this form inside its error boundary.
    template<class Body>
    std::invoke_result_t<Body> run(
        std::string_view procedureName, Body&& body, std::string_view kind = "Sub") {
        return procedure(
            component_, [&] { return qualifiedName(procedureName, kind); }, std::forward<Body>(body));
    }
    template<class Body>
    void handle(std::string_view handlerName, Body&& body) noexcept {
        eventHandler(
            component_, [&] { return qualifiedName(handlerName); }, std::forward<Body>(body));
    }

    // Connects `body` to an event of the form or of one of its controls, inside the boundary of a handler.
    template<class... Args, class Body>
    void on(Event<Args...>& event, std::string handlerName, Body body) {
        event.connect([this, name = std::move(handlerName), body = std::move(body)](
                          Args... args) { handle(name, [&] { body(args...); }); });
    }

    // Step by step what every set-up begins with: key preview, and the form's own instant-help object.
    void setUpKeysAndHelp(const HelpTopics& topics, const std::string& helpSource);
    // The controls over which instant help follows the mouse; handlers are named after the control.
    void followMouse(std::initializer_list<Control*> controls);
    // F1 opens the help file; the folder is asked for when the key is pressed.
    void openHelpOnF1(std::function<std::string()> programFolder);
    // Enter moves the focus to the next control, as the host does it everywhere.
    void moveOnEnter();
    // Space inverts the check box that has the focus, once for each time the key goes down. The key is
    // consumed, so that the view does not do it a second time.
    void toggleOnSpace();
    // Escape asks whether to save: Yes presses the one button, No the other, Cancel leaves the form open. So
    // does the application's end once the user has changed a control, or where `isChanged` says so.
    void askOnLeaving(Button& save, Button& discard, std::function<bool()> isChanged);
    // What every set-up ends with: the default pointer, then the form is shown with its `modal` value.
    void showAsSetUp();

    // Null before set-up and after unloading.
    InstantHelp* IHelp() const { return instantHelp_.get(); }
    bool instantHelpActive() const { return instantHelpActive_; }

private:
    void leaveAsAnswered(Button& save, Button& discard);

    Component& component_;
    std::string shortName_;
    std::unique_ptr<InstantHelp> instantHelp_;
    bool instantHelpActive_ = false;
    std::string shownState_; // of the controls when the form was shown
};

} // namespace genutil
