#include "hostif/form.h"

#include "hostif/error.h"

#include <algorithm>
#include <array>

namespace genutil {
namespace {

Form& asForm(Control& control) {
    return static_cast<Form&>(control);
}

constexpr std::array formMembers{
    ScriptMember{"Caption", [](Control& c) { return Value(asForm(c).caption.get()); },
        [](Control& c, const Value& v) { asForm(c).caption = v.toText(); }},
    ScriptMember{"WindowState", [](Control& c) { return Value(std::int16_t(asForm(c).windowState.get())); },
        [](Control& c, const Value& v) {
            const std::int16_t state = v.toInt16();
            if (state < 0 || state > 2)
                throw Error(errors::InvalidCall, "WindowState must be 0, 1 or 2");
            asForm(c).windowState = WindowState(state);
        }},
    ScriptMember{"Visible", [](Control& c) { return Value(asForm(c).isShown()); }, nullptr},
};

} // namespace

Form::Form(Desktop& desktop, std::string name, std::string text, WindowChrome chrome)
    : Control(*this, std::move(name), nullptr), caption(*this, Aspect::Caption, std::move(text)),
      desktop_(desktop), chrome_(chrome) {
    ++alive_;
}

Form::~Form() {
    --alive_;
}

std::span<const ScriptMember> Form::ownMembers() const {
    return formMembers;
}

Control* Form::findControl(std::string_view name) const {
    const auto found = std::ranges::find_if(controls_, [&](const Control* c) { return c->name() == name; });
    return found == controls_.end() ? nullptr : *found;
}

void Form::show(bool modal) {
    desktop_.show(loadedSelf(), modal);
}

void Form::showEarly() {
    desktop_.showEarly(loadedSelf());
}

std::shared_ptr<Form> Form::loadedSelf() {
    if (!loaded_)
        throw Error(errors::ObjectNotSet, name() + " has been unloaded");
    return shared_from_this();
}

void Form::hide() {
    desktop_.hide(*this);
}

bool Form::unload(UnloadReason reason) {
    if (!loaded_)
        return true;
    const auto self = shared_from_this(); // the last owner may be the window that goes here
    bool refused = false;
    queryUnload(refused, reason);
    if (refused || !loaded_)
        return !loaded_;
    loaded_ = false;
    unloaded();
    desktop_.close(*this);
    shown_ = false;
    active_ = false;
    activeControl_ = nullptr;
    return true;
}

Form::Occupied::Occupied(Form& form) : form_(form), alive_(form.weak_from_this().lock()) {
    ++form_.occupied_;
}

Form::Occupied::~Occupied() {
    if (--form_.occupied_ == 0)
        form_.hearsAgain();
}

bool Form::userClose(UnloadReason reason) {
    if (!hearsUser())
        return false;
    const auto self = shared_from_this();
    Control* const focused = activeControl_;
    moveFocus(nullptr);
    unload(reason);
    if (loaded_ && shown_ && !activeControl_)
        moveFocus(focused);
    return !loaded_;
}

void Form::moveFocus(Control* control) {
    if (control == activeControl_)
        return;
    Control* const earlier = std::exchange(activeControl_, control);
    // One that the focus was only on its way to has none to lose.
    if (earlier && earlier != arriving_) {
        Control* const outer = std::exchange(arriving_, control);
        earlier->lostFocus();
        arriving_ = outer;
    }
    // The handler above may have moved the focus somewhere else.
    if (control && activeControl_ == control) {
        control->gotFocus();
        changed(Aspect::Focus);
    }
}

bool Form::userKey(KeyEvent event) {
    if (!hearsUser())
        return true;
    const auto self = shared_from_this();
    if (keyPreview)
        keyDown(event);
    if (event.code != 0 && loaded_ && activeControl_)
        activeControl_->keyDown(event);
    return event.code == 0;
}

bool Form::userCharacter(int character) {
    if (!hearsUser())
        return true;
    const auto self = shared_from_this();
    KeyEvent event{.code = character};
    if (keyPreview)
        keyPress(event);
    return event.code == 0;
}

void Form::userActivate(bool active) {
    if (active == active_ || !loaded_)
        return;
    const auto self = shared_from_this();
    active_ = active;
    active ? activate() : deactivate();
}

void Form::userResize(double newWidth, double newHeight, WindowState state) {
    if (!loaded_ || (newWidth == width && newHeight == height && state == windowState))
        return;
    const auto self = shared_from_this();
    userIsResizing_ = true;
    windowState = state;
    width = newWidth;
    height = newHeight;
    userIsResizing_ = false;
    lastWidth_ = newWidth;
    lastHeight_ = newHeight;
    lastState_ = state;
    resize();
}

void Form::userMove(double newLeft, double newTop) {
    left = newLeft;
    top = newTop;
}

void Form::setShown(bool shown) {
    if (shown_ == shown)
        return;
    shown_ = shown;
    changed(Aspect::Visible);
}

void Form::notify(Aspect aspect) {
    Control::notify(aspect);
    // A change of size by the form's own rules raises the event just as the user's does; a change of place
    // does not.
    if (userIsResizing_ || (aspect != Aspect::Geometry && aspect != Aspect::WindowState))
        return;
    if (width != lastWidth_ || height != lastHeight_ || windowState != lastState_) {
        lastWidth_ = width;
        lastHeight_ = height;
        lastState_ = windowState;
        resize();
    }
}

} // namespace genutil
