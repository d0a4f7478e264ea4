#pragma once

#include "hostif/control.h"
#include "text/rich_text.h"
#include "text/text_document.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace genutil {

// The text of a report: plain, which is edited in place, or rich, which its view edits.
class ReportText : public Control {
public:
    ReportText(Form& form, std::string name);

    Observed<bool> locked{*this, Aspect::Locked, true};
    Observed<bool> wrapsLines{*this, Aspect::Font, false};
    Observed<double> zoom{*this, Aspect::Font, 1.0};
    Event<> change; // another text, or an edit of it

    // The text; of a rich one, its words. Never null. Changed only through this control.
    const std::shared_ptr<text::TextDocument>& document() const;
    void setDocument(std::shared_ptr<text::TextDocument> document);
    void clear();

    // Null while the text is plain.
    std::shared_ptr<const text::RichText> richText() const;
    void setRichText(std::shared_ptr<const text::RichText> text);
    bool isRich() const { return rich_ != nullptr; }

    // The user's edits of a plain text; each does nothing and gives nothing while the control is disabled or
    // locked, or when there is nothing to do. The caret goes behind what has changed.
    std::optional<text::TextChange> userReplace(const text::TextRange& range, std::string_view replacement,
        text::TextDocument::Joining joining = text::TextDocument::Joining::Alone);
    std::optional<text::TextChange> userUndo();
    std::optional<text::TextChange> userRedo();
    Event<const text::TextChange&> edited; // before `change`; not when another text was set

    // A view of a rich text edits a copy of its own. It says how the text is had from it; asked only when the
    // text is wanted. Setting another text ends that.
    struct RichSource {
        std::function<text::RichText()> text;
        std::function<std::string()> words; // as text::plainText(), with the view's own lines
    };
    void showRichFrom(RichSource source);
    // The user has edited the rich text.
    void userEditRich();

    // The selection lies between the anchor and the caret, whichever comes first.
    text::TextPosition anchor() const { return anchor_; }
    text::TextPosition caret() const { return caret_; }
    text::TextRange selection() const { return {std::min(anchor_, caret_), std::max(anchor_, caret_)}; }
    std::string selectedText() const;
    // Selects by code: the view scrolls to it. Places outside of the text become its nearest.
    void select(text::TextPosition anchor, text::TextPosition caret);
    void userSelect(text::TextPosition anchor, text::TextPosition caret);
    Event<> selectionChanged; // whoever has changed it

    // An edit by code, which a lock does not hold back. InvalidCall for a rich text.
    void replace(const text::TextRange& range, std::string_view replacement);

    // Keys that the form passes on to the view while another control has the focus; codes of namespace key.
    Event<int> sentKey;
    // Commands of the form that the view carries out as if its key had been pressed.
    enum class Command { Undo, Redo, Cut, Copy, Paste, Delete, SelectAll };
    Event<Command> sentCommand;

protected:
    std::span<const ScriptMember> ownMembers() const override;

private:
    std::optional<text::TextChange> noteEdit(std::optional<text::TextChange> edit);
    bool acceptsEdits() const { return enabled && !locked && !isRich(); }
    bool moveSelection(text::TextPosition anchor, text::TextPosition caret);

    mutable std::shared_ptr<text::TextDocument> document_;
    mutable std::shared_ptr<const text::RichText> rich_;
    RichSource source_;
    mutable bool wordsAreStale_ = false;
    mutable bool richIsStale_ = false;
    text::TextPosition anchor_;
    text::TextPosition caret_;
};

} // namespace genutil
