#include "hostif/report_text.h"

#include "hostif/error.h"
#include "hostif/text_units.h"

#include <array>
#include <utility>

namespace genutil {

ReportText::ReportText(Form& owner, std::string name)
    : Control(owner, std::move(name)), document_(std::make_shared<text::TextDocument>()) {}

const std::shared_ptr<text::TextDocument>& ReportText::document() const {
    if (std::exchange(wordsAreStale_, false)) {
        auto words = source_.words ? source_.words() : text::plainText(*rich_);
        document_ = std::make_shared<text::TextDocument>(
            text::TextDocument::fromBytes(std::move(words), text::basicCodePages(), text::encodings::utf8));
    }
    return document_;
}

void ReportText::setDocument(std::shared_ptr<text::TextDocument> document) {
    document_ = std::move(document);
    rich_.reset();
    source_ = {};
    wordsAreStale_ = richIsStale_ = false;
    anchor_ = caret_ = {};
    notify(Aspect::Text);
    selectionChanged();
    change();
}

void ReportText::clear() {
    setDocument(std::make_shared<text::TextDocument>());
}

std::shared_ptr<const text::RichText> ReportText::richText() const {
    if (std::exchange(richIsStale_, false))
        rich_ = std::make_shared<text::RichText>(source_.text());
    return rich_;
}

void ReportText::setRichText(std::shared_ptr<const text::RichText> text) {
    rich_ = std::move(text);
    source_ = {};
    wordsAreStale_ = true;
    richIsStale_ = false;
    anchor_ = caret_ = {};
    notify(Aspect::Text);
    selectionChanged();
    change();
}

void ReportText::showRichFrom(RichSource source) {
    source_ = std::move(source);
    wordsAreStale_ = true;
}

void ReportText::userEditRich() {
    wordsAreStale_ = richIsStale_ = true;
    change();
}

std::optional<text::TextChange> ReportText::noteEdit(std::optional<text::TextChange> edit) {
    if (edit) {
        anchor_ = caret_ = edit->newEnd;
        edited(*edit);
        selectionChanged();
        change();
    }
    return edit;
}

std::optional<text::TextChange> ReportText::userReplace(
    const text::TextRange& range, std::string_view replacement, text::TextDocument::Joining joining) {
    if (!acceptsEdits() || (range.isEmpty() && replacement.empty()))
        return std::nullopt;
    return noteEdit(document_->replace(range, replacement, joining));
}

std::optional<text::TextChange> ReportText::userUndo() {
    return acceptsEdits() ? noteEdit(document_->undo()) : std::nullopt;
}

std::optional<text::TextChange> ReportText::userRedo() {
    return acceptsEdits() ? noteEdit(document_->redo()) : std::nullopt;
}

std::string ReportText::selectedText() const {
    return document()->text(selection(), "\n");
}

bool ReportText::moveSelection(text::TextPosition anchor, text::TextPosition caret) {
    const auto inside = [this](text::TextPosition position) {
        position = std::min(position, document()->end());
        return text::TextPosition{
            position.line, std::min(position.byte, document()->line(position.line).size())};
    };
    const auto newAnchor = inside(anchor);
    const auto newCaret = inside(caret);
    const bool moved = newAnchor != anchor_ || newCaret != caret_;
    anchor_ = newAnchor;
    caret_ = newCaret;
    if (moved && !isRich())
        document_->endUndoStep();
    return moved;
}

void ReportText::select(text::TextPosition anchor, text::TextPosition caret) {
    const bool moved = moveSelection(anchor, caret);
    notify(Aspect::Value); // also when it was selected before: the view scrolls to it
    if (moved)
        selectionChanged();
}

void ReportText::userSelect(text::TextPosition anchor, text::TextPosition caret) {
    if (moveSelection(anchor, caret))
        selectionChanged();
}

void ReportText::replace(const text::TextRange& range, std::string_view replacement) {
    if (isRich())
        throw Error(
            errors::InvalidCall, "Only a plain text can be edited by code; " + name() + " holds a rich one");
    noteEdit(document_->replace(range, replacement));
}

std::span<const ScriptMember> ReportText::ownMembers() const {
    static const auto box = [](Control& control) -> ReportText& { return static_cast<ReportText&>(control); };
    static const auto places = [](Control& control) {
        const text::TextRange selected = box(control).selection();
        const text::TextDocument& document = *box(control).document();
        return std::pair(document.offsetOf(selected.from), document.offsetOf(selected.to));
    };
    // Setting the start ends the selection there, setting the length makes one from the start on.
    static const auto select = [](Control& control, std::uint64_t start, std::uint64_t length) {
        const text::TextDocument& document = *box(control).document();
        box(control).select(document.positionAt(start), document.positionAt(start + length));
    };
    static constexpr std::array members{
        ScriptMember{"Text",
            [](Control& c) {
                const text::TextDocument& document = *box(c).document();
                return Value(document.text({{}, document.end()}, "\r\n"));
            },
            [](Control& c, const Value& v) {
                box(c).setDocument(std::make_shared<text::TextDocument>(text::TextDocument::fromBytes(
                    v.toText(), text::basicCodePages(), text::encodings::utf8)));
            }},
        ScriptMember{"Locked", [](Control& c) { return Value(box(c).locked.get()); },
            [](Control& c, const Value& v) { box(c).locked = v.to<bool>(); }},
        ScriptMember{"SelText", [](Control& c) { return Value(box(c).selectedText()); },
            [](Control& c, const Value& v) { box(c).replace(box(c).selection(), v.toText()); }},
        ScriptMember{"SelStart", [](Control& c) { return textUnits(places(c).first); },
            [](Control& c, const Value& v) { select(c, textUnits(v), 0); }},
        ScriptMember{"SelLength", [](Control& c) { return textUnits(places(c).second - places(c).first); },
            [](Control& c, const Value& v) { select(c, places(c).first, textUnits(v)); }},
    };
    return members;
}

} // namespace genutil
