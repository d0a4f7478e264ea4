#include "fileview/find_bar.h"

#include "hostif/desktop.h"
#include "hostif/form.h"

namespace genutil {
namespace {

constexpr std::uint64_t searchedAsTyped = 64 * 1024 * 1024; // bytes
constexpr std::size_t longestProposal = 200;                // bytes

constexpr const char* notFound = "Not found";

} // namespace

FindBar::FindBar(Form& form, ReportText& text)
    : pnlFind(form, "pnlFind"), lblFind(form, "lblFind", "Fi&nd:"), txtFind(form, "txtFind"),
      chkMatchCase(form, "chkMatchCase", "Match &case"), chkWholeWord(form, "chkWholeWord", "&Whole words"),
      cmdFindNext(form, "cmdFindNext", "Ne&xt"), cmdFindPrevious(form, "cmdFindPrevious", "Previo&us"),
      cmdFindClose(form, "cmdFindClose", "Clo&se"), lblFindResult(form, "lblFindResult", ""), text_(text) {
    pnlFind.visible = false;
    txtFind.toolTip = "Text to find, within one line";
    cmdFindNext.toolTip = "Find the next match (F3)";
    cmdFindPrevious.toolTip = "Find the previous match (Shift+F3)";
}

text::SearchQuery FindBar::query() const {
    return {.text = txtFind.text, .matchCase = chkMatchCase.ticked, .wholeWord = chkWholeWord.ticked};
}

void FindBar::open() {
    const text::TextRange selected = text_.selection();
    if (!selected.isEmpty() && selected.from.line == selected.to.line &&
        selected.to.byte - selected.from.byte <= longestProposal)
        txtFind.text = text_.selectedText();
    lblFindResult.caption = "";
    pnlFind.visible = true;
    txtFind.setFocus();
    txtFind.selectAll();
}

void FindBar::close() {
    pnlFind.visible = false;
    text_.setFocus();
}

bool FindBar::selectFrom(text::TextPosition start, text::SearchDirection direction) {
    const auto found = text::find(*text_.document(), query(), start, direction);
    if (found)
        text_.select(found->from, found->to);
    return found.has_value();
}

void FindBar::search(text::SearchDirection direction) {
    if (txtFind.text.get().empty())
        return open();
    const PointerScope hourglass(text_.form().desktop(), Pointer::Hourglass);
    const bool forward = direction == text::SearchDirection::Forward;
    const text::TextRange selected = text_.selection();
    if (selectFrom(forward ? selected.to : selected.from, direction)) {
        lblFindResult.caption = "";
        return;
    }
    const bool around = selectFrom(forward ? text::TextPosition{} : text_.document()->end(), direction);
    pnlFind.visible = true;
    lblFindResult.caption = !around   ? notFound
                            : forward ? "Continued from the start of the text"
                                      : "Continued from the end of the text";
}

void FindBar::searchAsTyped() {
    lblFindResult.caption = "";
    if (!pnlFind.visible || txtFind.text.get().empty() || text_.document()->size() > searchedAsTyped)
        return;
    if (!selectFrom(text_.selection().from, text::SearchDirection::Forward) &&
        !selectFrom({}, text::SearchDirection::Forward))
        lblFindResult.caption = notFound;
}

} // namespace genutil
