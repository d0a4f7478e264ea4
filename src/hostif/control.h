#pragma once

#include "hostif/event.h"
#include "hostif/value.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace genutil {

class Control;
class Form;

// What changed about a control; a view redraws just that.
enum class Aspect {
    Text,
    Value,
    Enabled,
    Visible,
    Geometry,
    Font,
    Items,
    Locked,
    Help,
    Caption,
    Focus,
    Scroll,
    Colour,
    Mark,
    WindowState
};

// A property of a control that views follow: assigning a different value notifies the control's `changed`.
template<class T>
class Observed {
public:
    Observed(Control& owner, Aspect aspect, T initial)
        : owner_(owner), aspect_(aspect), value_(std::move(initial)) {}
    Observed(const Observed&) = delete;

    const T& get() const { return value_; }
    operator const T&() const { return value_; }
    Observed& operator=(T value);
    Observed& operator=(const Observed& other) { return *this = other.value_; }

private:
    Control& owner_;
    Aspect aspect_;
    T value_;
};

struct Font {
    std::string name = "MS Sans Serif";
    double size = 8.25; // points
    bool bold = false;

    friend bool operator==(const Font&, const Font&) = default;
};

// The background of a control by what it means; Normal is the view's own. Info: a value that can be typed.
// Light3D: one that cannot be changed now. Refused: one that breaks a rule.
enum class BackColor { Normal, Info, Light3D, Refused };

// Virtual-key codes that the rules name.
namespace key {
inline constexpr int Enter = 13;
inline constexpr int Escape = 27;
inline constexpr int Space = 32;
inline constexpr int PageUp = 33;
inline constexpr int PageDown = 34;
inline constexpr int End = 35;
inline constexpr int Home = 36;
inline constexpr int Up = 38;
inline constexpr int Down = 40;
inline constexpr int Delete = 46;
inline constexpr int A = 65;
inline constexpr int P = 80;
inline constexpr int F1 = 112;
} // namespace key

// A key on its way to the focused control. A handler that sets the code to 0 consumes it.
struct KeyEvent {
    int code = 0;
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
    bool repeated = false; // sent again while the key is held down
};

// A property of a control or form that host objects may use by name (instant help, general procedures, the
// host's handle on the viewer's text). `write` is null for a read-only one.
struct ScriptMember {
    std::string_view name;
    Value (*read)(Control&);
    void (*write)(Control&, const Value&);
};

// The model of one control: its state and its events, and nothing of how it looks. A view shows the state and
// reports the user's acts through the members named "user…". Lengths are twips (1/1440 inch).
class Control {
public:
    Control(Form& form, std::string name);
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::string& name() const { return name_; }
    Form& form() const { return *form_; }

    Observed<bool> enabled{*this, Aspect::Enabled, true};
    Observed<bool> visible{*this, Aspect::Visible, true};
    Observed<double> left{*this, Aspect::Geometry, 0};
    Observed<double> top{*this, Aspect::Geometry, 0};
    Observed<double> width{*this, Aspect::Geometry, 0};
    Observed<double> height{*this, Aspect::Geometry, 0};
    Observed<Font> font{*this, Aspect::Font, {}};
    Observed<BackColor> backColor{*this, Aspect::Colour, BackColor::Normal};
    Observed<bool> marked{*this, Aspect::Mark, false}; // its value stands out from the usual one
    Observed<std::string> tag{*this, Aspect::Help, {}};
    Observed<std::string> toolTip{*this, Aspect::Help, {}};
    int tabIndex = -1;     // -1: not in the tab order
    int helpContextId = 0; // topic number; 0: no topic

    Event<Aspect> changed;
    Event<> gotFocus;
    Event<> lostFocus;
    Event<KeyEvent&> keyDown;
    Event<> mouseMove;

    // Whether the user can move the focus here.
    bool canFocus() const;
    // Whether a press of the user at this control is heard.
    bool hearsUser() const;
    void setFocus();

    // Properties by name, compared without regard to case. A name without a member: Error NoSuchMember;
    // writing a read-only one: Error InvalidCall.
    Value readMember(std::string_view member);
    void writeMember(std::string_view member, const Value& value);
    const ScriptMember* findMember(std::string_view member) const;

    virtual void notify(Aspect aspect) { changed(aspect); }

protected:
    // A form, which is its own control.
    Control(Form& form, std::string name, std::nullptr_t);
    virtual std::span<const ScriptMember> ownMembers() const { return {}; }

private:
    Form* form_;
    std::string name_;
};

template<class T>
Observed<T>& Observed<T>::operator=(T value) {
    if (!(value == value_)) {
        value_ = std::move(value);
        owner_.notify(aspect_);
    }
    return *this;
}

} // namespace genutil
