// The caret and the selection, and what the keys that move them do.
#include "platform/qt/text/character_steps.h"
#include "platform/qt/text/text_view.h"
#include "platform/qt/tie.h"
#include "platform/qt/virtual_keys.h"

#include <QScrollBar>

#include <algorithm>
#include <array>

namespace genutil {

using text::TextPosition;

namespace {

struct SentKey {
    int code;
    Movement movement;
};

constexpr std::array sentKeys{SentKey{key::Up, Movement::Up}, SentKey{key::Down, Movement::Down},
    SentKey{key::PageUp, Movement::PageUp}, SentKey{key::PageDown, Movement::PageDown},
    SentKey{key::Home, Movement::RowStart}, SentKey{key::End, Movement::RowEnd},
    SentKey{virtualkey::Left, Movement::Left}, SentKey{virtualkey::Right, Movement::Right}};

} // namespace

void TextView::followKey(int code) {
    if (const auto* sent = std::ranges::find(sentKeys, code, &SentKey::code); sent != sentKeys.end())
        follow(sent->movement, false);
}

void TextView::follow(Movement movement, bool extends) {
    if (!isEditable()) {
        // A viewer's keys: Home and End mean the whole text.
        if (movement == Movement::RowStart)
            movement = Movement::TextStart;
        else if (movement == Movement::RowEnd)
            movement = Movement::TextEnd;
        if (!extends) {
            scrollBy(movement);
            return;
        }
    }
    moveCaret(movement, extends);
}

void TextView::scrollBy(Movement movement) {
    const int page = std::max(1, pageRows() - 1);
    switch (movement) {
    case Movement::Up:
        scrollRows(-1);
        break;
    case Movement::Down:
        scrollRows(1);
        break;
    case Movement::PageUp:
        scrollRows(-page);
        break;
    case Movement::PageDown:
        scrollRows(page);
        break;
    case Movement::TextStart:
    case Movement::RowStart:
        scrollTo({});
        break;
    case Movement::TextEnd:
    case Movement::RowEnd:
        scrollTo(lastTop_);
        break;
    case Movement::Left:
    case Movement::WordLeft:
        horizontalScrollBar()->triggerAction(QScrollBar::SliderSingleStepSub);
        break;
    case Movement::Right:
    case Movement::WordRight:
        horizontalScrollBar()->triggerAction(QScrollBar::SliderSingleStepAdd);
        break;
    }
}

void TextView::moveCaret(Movement movement, bool extends) {
    const bool vertical = movement == Movement::Up || movement == Movement::Down ||
                          movement == Movement::PageUp || movement == Movement::PageDown;
    const bool collapses =
        !extends && anchor_ != caret_ && (movement == Movement::Left || movement == Movement::Right);
    TextPosition target =
        collapses ? movement == Movement::Left ? std::min(anchor_, caret_) : std::max(anchor_, caret_)
                  : moved(movement);
    const auto x = vertical ? wantedX_ : std::nullopt;
    select(extends ? anchor_ : target, target);
    wantedX_ = x;
    showPosition(caret_);
    if (extends)
        offerSelection();
}

TextPosition TextView::moved(Movement movement) {
    const int page = std::max(1, pageRows() - 1);
    switch (movement) {
    case Movement::Left:
        return previousCharacter(*document_, caret_);
    case Movement::Right:
        return nextCharacter(*document_, caret_);
    case Movement::WordLeft:
        return previousWord(*document_, caret_);
    case Movement::WordRight:
        return nextWord(*document_, caret_);
    case Movement::Up:
        return movedVertically(-1);
    case Movement::Down:
        return movedVertically(1);
    case Movement::PageUp:
    case Movement::PageDown: {
        // The caret keeps its row of the view.
        const int rows = movement == Movement::PageUp ? -page : page;
        if (placeOf(caret_))
            scrollRows(rows);
        return movedVertically(rows);
    }
    case Movement::RowStart:
        return movedInRow(false);
    case Movement::RowEnd:
        return movedInRow(true);
    case Movement::TextStart:
        return {};
    case Movement::TextEnd:
        break;
    }
    return document_->end();
}

TextPosition TextView::movedVertically(int rows) {
    const TextRow from = rows_->rowAt(caret_);
    if (!wantedX_)
        wantedX_ = rows_->xOf(from, caret_.byte);
    const TextRow to = rows_->rowAt(rowsAway(from.position(), rows));
    return to.position() == from.position() ? caret_ : TextPosition{to.line, rows_->byteNear(to, *wantedX_)};
}

TextPosition TextView::movedInRow(bool toEnd) const {
    const TextRow row = rows_->rowAt(caret_);
    if (!toEnd)
        return row.position();
    const std::string_view line = document_->line(row.line);
    // The end of a wrapped row is the start of the next: the caret stays before the row's last blank.
    return {row.line, row.end < line.size() ? previousCharacter(line, row.end) : row.end};
}

void TextView::select(TextPosition anchor, TextPosition caret) {
    wantedX_.reset();
    if (model_)
        report(*model_, [&] { model_->userSelect(anchor, caret); });
}

} // namespace genutil
