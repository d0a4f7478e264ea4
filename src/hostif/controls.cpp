#include "hostif/controls.h"

#include "hostif/error.h"
#include "hostif/form.h"
#include "hostif/text_units.h"

#include <algorithm>
#include <array>

namespace genutil {
namespace {

template<class C, auto Member>
Value readOf(Control& control) {
    return Value((static_cast<C&>(control).*Member).get());
}

template<class C, auto Member, class T>
void writeOf(Control& control, const Value& value) {
    static_cast<C&>(control).*Member = value.to<T>();
}

template<class C>
constexpr ScriptMember captionMember{"Caption", readOf<C, &C::caption>, writeOf<C, &C::caption, std::string>};

} // namespace

Label::Label(Form& owner, std::string name, std::string text, Sizing sizing)
    : Control(owner, std::move(name)), caption(*this, Aspect::Caption, std::move(text)), sizing_(sizing) {
    notify(Aspect::Caption);
}

void Label::notify(Aspect aspect) {
    if (sizing_ == Sizing::Auto && (aspect == Aspect::Caption || aspect == Aspect::Font))
        width = form().desktop().textWidth(font, caption);
    Control::notify(aspect);
}

std::span<const ScriptMember> Label::ownMembers() const {
    static constexpr std::array members{captionMember<Label>};
    return members;
}

Panel::Panel(Form& owner, std::string name, std::string text)
    : Control(owner, std::move(name)), caption(*this, Aspect::Caption, std::move(text)) {}

Button::Button(Form& owner, std::string name, std::string text)
    : Control(owner, std::move(name)), caption(*this, Aspect::Caption, std::move(text)) {}

void Button::userPress() {
    if (!hearsUser())
        return;
    const Form::Occupied now(form());
    click();
}

std::span<const ScriptMember> Button::ownMembers() const {
    static constexpr std::array members{captionMember<Button>};
    return members;
}

MenuItem::MenuItem(Form& owner, std::string name, std::string text, MenuItem* parent, std::string shortcut)
    : Control(owner, std::move(name)), caption(*this, Aspect::Caption, std::move(text)), parent_(parent),
      shortcut_(std::move(shortcut)) {}

void MenuItem::userChoose() {
    if (!hearsUser() || !visible || isChosen_)
        return;
    struct Choosing {
        bool& chosen;
        std::shared_ptr<Form> alive;
        ~Choosing() { chosen = false; }
    } now{isChosen_ = true, form().weak_from_this().lock()};
    click();
}

TextBox::TextBox(Form& owner, std::string name, std::string initial)
    : Control(owner, std::move(name)), text(*this, Aspect::Text, std::move(initial)) {}

void TextBox::userEdit(std::string newText) {
    if (enabled && !locked)
        text = std::move(newText);
}

void TextBox::select(std::size_t start, std::size_t length) {
    selectionStart = std::min(start, text.get().size());
    selectionLength = std::min(length, text.get().size() - selectionStart);
    changed(Aspect::Value);
}

void TextBox::notify(Aspect aspect) {
    Control::notify(aspect);
    if (aspect == Aspect::Text)
        change();
}

std::span<const ScriptMember> TextBox::ownMembers() const {
    static constexpr std::array members{
        ScriptMember{"Text", readOf<TextBox, &TextBox::text>, writeOf<TextBox, &TextBox::text, std::string>},
        ScriptMember{"Locked", readOf<TextBox, &TextBox::locked>, writeOf<TextBox, &TextBox::locked, bool>},
        // Setting the start ends the selection there, setting the length makes one from the start on.
        ScriptMember{"SelStart",
            [](Control& c) { return textUnits(static_cast<TextBox&>(c).selectionStart); },
            [](Control& c, const Value& v) {
                static_cast<TextBox&>(c).select(std::size_t(textUnits(v)), 0);
            }},
        ScriptMember{"SelLength",
            [](Control& c) { return textUnits(static_cast<TextBox&>(c).selectionLength); },
            [](Control& c, const Value& v) {
                auto& box = static_cast<TextBox&>(c);
                box.select(box.selectionStart, std::size_t(textUnits(v)));
            }},
    };
    return members;
}

CheckBox::CheckBox(Form& owner, std::string name, std::string text)
    : Control(owner, std::move(name)), caption(*this, Aspect::Caption, std::move(text)) {}

void CheckBox::userToggle() {
    if (hearsUser())
        ticked = !ticked;
}

void CheckBox::notify(Aspect aspect) {
    Control::notify(aspect);
    if (aspect == Aspect::Value)
        click();
}

std::span<const ScriptMember> CheckBox::ownMembers() const {
    static constexpr std::array members{
        captionMember<CheckBox>,
        ScriptMember{
            "Value", readOf<CheckBox, &CheckBox::ticked>, writeOf<CheckBox, &CheckBox::ticked, bool>},
    };
    return members;
}

OptionButton::OptionButton(Form& owner, std::string name, std::string text)
    : Control(owner, std::move(name)), caption(*this, Aspect::Caption, std::move(text)) {}

void OptionButton::userSelect() {
    if (hearsUser())
        selected = true;
}

void OptionButton::notify(Aspect aspect) {
    Control::notify(aspect);
    if (aspect == Aspect::Value && selected)
        click();
}

ComboBox::ComboBox(Form& owner, std::string name) : Control(owner, std::move(name)) {}

std::optional<ListItem> ComboBox::selectedItem() const {
    if (listIndex < 0 || std::size_t(listIndex) >= items.get().size())
        return std::nullopt;
    return items.get()[std::size_t(listIndex)];
}

void ComboBox::userSelect(std::int16_t position) {
    if (hearsUser())
        listIndex = position;
}

void ComboBox::notify(Aspect aspect) {
    Control::notify(aspect);
    if (aspect == Aspect::Value)
        click();
}

std::span<const ScriptMember> ComboBox::ownMembers() const {
    static constexpr std::array members{
        ScriptMember{"ListIndex", readOf<ComboBox, &ComboBox::listIndex>,
            writeOf<ComboBox, &ComboBox::listIndex, std::int16_t>},
    };
    return members;
}

FloodGauge::FloodGauge(Form& owner, std::string name) : Control(owner, std::move(name)) {}

std::span<const ScriptMember> FloodGauge::ownMembers() const {
    static constexpr std::array members{
        ScriptMember{"FloodPercent", readOf<FloodGauge, &FloodGauge::floodPercent>,
            writeOf<FloodGauge, &FloodGauge::floodPercent, std::int16_t>},
    };
    return members;
}

Tabs::Tabs(Form& owner, std::string name, std::vector<std::string> tabTitles)
    : Control(owner, std::move(name)), titles(std::move(tabTitles)) {}

LineSample::LineSample(Form& owner, std::string name, Rgb initialColor, LineStyle lineStyle, int pixels)
    : Control(owner, std::move(name)), color(*this, Aspect::Colour, initialColor), style(lineStyle),
      lineWidth(pixels) {}

} // namespace genutil
