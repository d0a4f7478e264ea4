#pragma once

#include "hostif/control.h"
#include "hostif/desktop.h"

#include <memory>
#include <vector>

namespace genutil {

enum class WindowState : std::int16_t { Normal = 0, Minimized = 1, Maximized = 2 };

// Who asks a form to unload. CloseBox: the user, at the window's own frame. Ending: the application ends, or
// a program closes the window; that never counts as the user's consent to anything.
enum class UnloadReason { CloseBox, Code, Ending };

// What a window's frame, title bar and menu bar take of its nominal outer size, in twips.
struct WindowChrome {
    double width = 0;
    double height = 0;
};

// The model of a window. Its size is the nominal outer size in twips: the rules compute with it, and the
// desktop's view gives the window's contents what is left of it after `chrome`.
class Form : public Control, public std::enable_shared_from_this<Form> {
public:
    Form(Desktop& desktop, std::string name, std::string caption, WindowChrome chrome = {});
    ~Form() override;

    // How many forms exist: while a form is open, the component must stay in the process.
    static int aliveCount() { return alive_; }

    Desktop& desktop() const { return desktop_; }
    const WindowChrome& chrome() const { return chrome_; }
    const std::vector<Control*>& controls() const { return controls_; }
    Control* findControl(std::string_view name) const;
    Control* activeControl() const { return activeControl_; }

    Observed<std::string> caption;
    Observed<WindowState> windowState{*this, Aspect::WindowState, WindowState::Normal};
    bool keyPreview = false;

    Event<> activate;
    Event<> deactivate;
    Event<KeyEvent&> keyPress;              // `code` is the character code
    Event<> resize;                         // the size or the window state changed
    Event<bool&, UnloadReason> queryUnload; // set the flag to refuse
    Event<> unloaded;
    Event<> refreshed;  // the form asks to be painted afresh
    Event<> hearsAgain; // hearsUser() has become true

    // False after unload. A form starts loaded.
    bool isLoaded() const { return loaded_; }
    bool isShown() const { return shown_; }
    bool isActive() const { return active_; }
    // Whether presses, keys and closing by the user are heard. A fast typist's second
    // press may come before what the first one set off has ended.
    bool hearsUser() const { return occupied_ == 0; }
    // Whether an event of the form's window is being handled; the window must not be deleted then.
    bool handlesEvent() const { return handling_ > 0; }

    // The user is not heard while one lives: a question or a modal form stands over this one, or one of its
    // buttons is doing its work.
    class Occupied {
    public:
        explicit Occupied(Form& form);
        ~Occupied();
        Occupied(const Occupied&) = delete;
        Occupied& operator=(const Occupied&) = delete;

    private:
        Form& form_;
        std::shared_ptr<Form> alive_;
    };
    // An event of the form's window is being handled while one lives. Keeps the form alive.
    class Handling {
    public:
        explicit Handling(Form& form) : form_(form.shared_from_this()) { ++form_->handling_; }
        ~Handling() { --form_->handling_; }
        Handling(const Handling&) = delete;
        Handling& operator=(const Handling&) = delete;

    private:
        std::shared_ptr<Form> form_;
    };

    void show(bool modal);
    // Shows the form before its set-up has ended; a modal show() goes on with it.
    void showEarly();
    void hide();
    // Asks queryUnload, then runs unloaded and takes the window away. False when a handler refused.
    bool unload(UnloadReason reason = UnloadReason::Code);
    void refresh() { refreshed(); }

    // Moves the focus: the control that loses it hears first. A null control leaves the form without focus.
    void moveFocus(Control* control);

    // What the view reports. userKey and userCharacter return True when the key was consumed.
    // Closes the form as the user or the application's end does it: what has the focus is left first. False
    // when the form stays.
    bool userClose(UnloadReason reason);
    bool userKey(KeyEvent event);
    bool userCharacter(int character);
    void userActivate(bool active);
    void userResize(double newWidth, double newHeight, WindowState state);
    void userMove(double newLeft, double newTop);

    void notify(Aspect aspect) override;

    // Called by the desktop when the window appears or goes.
    void setShown(bool shown);

    // Called by each control as it is made a member of the form.
    void adopt(Control& control) { controls_.push_back(&control); }

protected:
    std::span<const ScriptMember> ownMembers() const override;

private:
    // Throws ObjectNotSet for an unloaded form.
    std::shared_ptr<Form> loadedSelf();

    static inline int alive_ = 0;

    Desktop& desktop_;
    WindowChrome chrome_;
    std::vector<Control*> controls_;
    Control* activeControl_ = nullptr;
    Control* arriving_ = nullptr; // while the control that loses the focus to it hears of that
    bool loaded_ = true;
    bool shown_ = false;
    bool active_ = false;
    bool userIsResizing_ = false;
    int occupied_ = 0;
    int handling_ = 0;
    double lastWidth_ = 0;
    double lastHeight_ = 0;
    WindowState lastState_ = WindowState::Normal;
};

} // namespace genutil
