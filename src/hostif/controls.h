#pragma once

#include "hostif/control.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The models of the kinds of control that the dialogs use. Assigning a property by code and the user's act
// run the same handlers, as the rules of the dialogs expect.
namespace genutil {

// Text that the user cannot change. An auto-sized label is always as wide as its caption.
class Label : public Control {
public:
    enum class Sizing { Fixed, Auto };

    Label(Form& form, std::string name, std::string text, Sizing sizing = Sizing::Fixed);

    Observed<std::string> caption;

    void notify(Aspect aspect) override;
    Sizing sizing() const { return sizing_; }

protected:
    std::span<const ScriptMember> ownMembers() const override;

private:
    Sizing sizing_;
};

class Panel : public Control {
public:
    Panel(Form& form, std::string name, std::string text = {});
    Observed<std::string> caption;
};

class Button : public Control {
public:
    Button(Form& form, std::string name, std::string text);

    Observed<std::string> caption;
    Observed<bool> isDefault{*this, Aspect::Value, false}; // pressed by Enter
    bool isCancel = false;                                 // pressed by Escape
    // Pressed also where the control that has the focus refuses to let it go: what it does takes no entry.
    bool needsNoValidEntry = false;
    Event<> click;

    // Does nothing while disabled, and while a button of the form is doing its work.
    void userPress();

protected:
    std::span<const ScriptMember> ownMembers() const override;
};

// An entry of a menu bar or of a pop-up menu. "-" is a separator; a menu is an item that others name as
// parent.
class MenuItem : public Control {
public:
    MenuItem(Form& form, std::string name, std::string text, MenuItem* parent = nullptr,
        std::string shortcut = {});

    Observed<std::string> caption;
    Observed<bool> checked{*this, Aspect::Value, false};
    bool isCheckable = false; // shows where its tick would be also while it has none
    Event<> click;

    MenuItem* parent() const { return parent_; }
    const std::string& shortcut() const { return shortcut_; }
    bool isSeparator() const { return caption.get() == "-"; }
    // Does nothing while disabled or hidden, and while the last choice of it is still being carried out.
    void userChoose();

private:
    bool isChosen_ = false;
    MenuItem* parent_;
    std::string shortcut_;
};

class TextBox : public Control {
public:
    TextBox(Form& form, std::string name, std::string initial = {});

    Observed<std::string> text;
    Observed<bool> locked{*this, Aspect::Locked, false};
    std::size_t selectionStart = 0; // in UTF-8 units
    std::size_t selectionLength = 0;
    Event<> change;

    // The user's typing. Does nothing while disabled or locked.
    void userEdit(std::string newText);
    // Selects part of the text; what lies outside of it is left out.
    void select(std::size_t start, std::size_t length);
    void selectAll() { select(0, text.get().size()); }
    void notify(Aspect aspect) override;

protected:
    std::span<const ScriptMember> ownMembers() const override;
};

class CheckBox : public Control {
public:
    CheckBox(Form& form, std::string name, std::string text);

    Observed<std::string> caption;
    Observed<bool> ticked{*this, Aspect::Value, false};
    Event<> click; // after every change of `ticked`, whoever made it

    void userToggle();
    void notify(Aspect aspect) override;

protected:
    std::span<const ScriptMember> ownMembers() const override;
};

// One option of a group; the form keeps the group's rule.
class OptionButton : public Control {
public:
    OptionButton(Form& form, std::string name, std::string text);

    Observed<std::string> caption;
    Observed<bool> selected{*this, Aspect::Value, false};
    Event<> click; // after it has become selected

    void userSelect();
    void notify(Aspect aspect) override;
};

struct ListItem {
    std::string text;
    std::int32_t code = 0;

    friend bool operator==(const ListItem&, const ListItem&) = default;
};

// A drop-down list. Position -1 means that nothing is selected.
class ComboBox : public Control {
public:
    ComboBox(Form& form, std::string name);

    Observed<std::vector<ListItem>> items{*this, Aspect::Items, {}};
    Observed<std::int16_t> listIndex{*this, Aspect::Value, -1};
    Event<> click; // after every change of the position

    // The selected item; none while the position is -1.
    std::optional<ListItem> selectedItem() const;
    void userSelect(std::int16_t position);
    void notify(Aspect aspect) override;

protected:
    std::span<const ScriptMember> ownMembers() const override;
};

// A bar filled to a percentage, 0 to 100.
class FloodGauge : public Control {
public:
    FloodGauge(Form& form, std::string name);
    Observed<std::int16_t> floodPercent{*this, Aspect::Value, 0};

protected:
    std::span<const ScriptMember> ownMembers() const override;
};

// A row of tabs; which controls belong to a tab is the view's business.
class Tabs : public Control {
public:
    Tabs(Form& form, std::string name, std::vector<std::string> titles);
    const std::vector<std::string> titles;
    Observed<std::int16_t> current{*this, Aspect::Value, 0};
};

struct Rgb {
    std::uint8_t red = 0, green = 0, blue = 0;
    friend bool operator==(const Rgb&, const Rgb&) = default;
};
enum class LineStyle { Solid, Dashed, Dotted, DashDot };

// A short line in the colour and style of a legend.
class LineSample : public Control {
public:
    LineSample(Form& form, std::string name, Rgb initialColor, LineStyle lineStyle, int lineWidth = 1);

    Observed<Rgb> color;
    const LineStyle style;
    const int lineWidth; // pixels
};

} // namespace genutil
