// Keys and commands that change the text or hand it to the clipboard.
#include "platform/qt/text/character_steps.h"
#include "platform/qt/text/text_view.h"
#include "platform/qt/tie.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMimeData>

#include <algorithm>
#include <array>
#include <new>

namespace genutil {

using text::TextDocument;
using text::TextPosition;

namespace {

// What is copied exists three times over, in the clipboard's 16-bit units for one.
constexpr std::uint64_t largestCopy = 256u << 20; // bytes
constexpr std::uint64_t largestOffer = 1u << 20;  // bytes

struct MovementKey {
    QKeySequence::StandardKey plain;
    QKeySequence::StandardKey extending;
    Movement movement;
};

constexpr std::array movementKeys{
    MovementKey{QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar, Movement::Left},
    MovementKey{QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar, Movement::Right},
    MovementKey{QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord, Movement::WordLeft},
    MovementKey{QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord, Movement::WordRight},
    MovementKey{QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, Movement::Up},
    MovementKey{QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, Movement::Down},
    MovementKey{QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage, Movement::PageUp},
    MovementKey{QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage, Movement::PageDown},
    MovementKey{QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine, Movement::RowStart},
    MovementKey{QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine, Movement::RowEnd},
    MovementKey{
        QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument, Movement::TextStart},
    MovementKey{QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument, Movement::TextEnd},
};

const MovementKey* movementOf(const QKeyEvent& event, bool& extends) {
    for (const MovementKey& each : movementKeys) {
        extends = event.matches(each.extending);
        if (extends || event.matches(each.plain))
            return &each;
    }
    return nullptr;
}

struct CommandKey {
    QKeySequence::StandardKey key;
    ReportText::Command command;
};

constexpr std::array commandKeys{CommandKey{QKeySequence::Undo, ReportText::Command::Undo},
    CommandKey{QKeySequence::Redo, ReportText::Command::Redo},
    CommandKey{QKeySequence::Cut, ReportText::Command::Cut},
    CommandKey{QKeySequence::Copy, ReportText::Command::Copy},
    CommandKey{QKeySequence::Paste, ReportText::Command::Paste},
    CommandKey{QKeySequence::SelectAll, ReportText::Command::SelectAll}};

const CommandKey* commandOf(const QKeyEvent& event) {
    const auto* found =
        std::ranges::find_if(commandKeys, [&](const CommandKey& each) { return event.matches(each.key); });
    return found == commandKeys.end() ? nullptr : found;
}

bool isEnter(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) &&
           !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
}

// Whether the key stands for characters. Those typed with AltGr count; Ctrl and Alt alone make shortcuts.
bool isTyped(const QKeyEvent& event) {
    const Qt::KeyboardModifiers held = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    const bool shortcut = held == Qt::ControlModifier || held == Qt::AltModifier;
    return !shortcut && !event.text().isEmpty() && event.text().front().category() != QChar::Other_Control;
}

struct Erasure {
    QKeySequence::StandardKey key;
    TextPosition (*to)(const TextDocument& document, TextPosition caret);
};

TextPosition endOfLine(const TextDocument& document, TextPosition caret) {
    return {caret.line, document.line(caret.line).size()};
}

constexpr std::array erasures{
    Erasure{QKeySequence::Backspace,
        [](const TextDocument& document, TextPosition caret) { return previousCodePoint(document, caret); }},
    Erasure{QKeySequence::Delete,
        [](const TextDocument& document, TextPosition caret) { return nextCharacter(document, caret); }},
    Erasure{QKeySequence::DeleteStartOfWord, previousWord}, Erasure{QKeySequence::DeleteEndOfWord, nextWord},
    Erasure{QKeySequence::DeleteEndOfLine, endOfLine}};

const Erasure* erasureOf(const QKeyEvent& event) {
    // Not every desktop has a sequence for this one.
    if (event.key() == Qt::Key_Backspace && !(event.modifiers() & ~Qt::ShiftModifier))
        return erasures.data();
    const auto* found =
        std::ranges::find_if(erasures, [&](const Erasure& each) { return event.matches(each.key); });
    return found == erasures.end() ? nullptr : found;
}

} // namespace

bool TextView::edit(
    const text::TextRange& range, std::string_view replacement, TextDocument::Joining joining) {
    bool done = false;
    if (!isEditable())
        return false;
    report(*model_, [&] {
        try {
            done = model_->userReplace(range, replacement, joining).has_value();
        } catch (const std::bad_alloc&) { // the text is as it was
            QApplication::beep();
        }
    });
    if (done && model_)
        showPosition(caret_);
    return done;
}

bool TextView::takesKey(const QKeyEvent& event) const {
    if (const CommandKey* found = commandOf(event))
        return canDo(found->command) || found->command == Command::Copy;
    bool extends = false;
    if (movementOf(event, extends))
        return true;
    return isEditable() && (erasureOf(event) || isEnter(event) || isTyped(event));
}

bool TextView::event(QEvent* event) {
    // Tells the window's menu that these are keys of the view while it has the focus.
    if (event->type() == QEvent::ShortcutOverride && takesKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress && pressTab(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QAbstractScrollArea::event(event);
}

// Tab is a character of an edited text; with Shift or Ctrl it leaves the view, as it always does while
// locked.
bool TextView::pressTab(const QKeyEvent& event) {
    const bool back = event.key() == Qt::Key_Backtab;
    if (!back && event.key() != Qt::Key_Tab)
        return false;
    if (event.modifiers() & Qt::ControlModifier)
        return focusNextPrevChild(!back && !(event.modifiers() & Qt::ShiftModifier));
    if (back || event.modifiers() != Qt::NoModifier || !isEditable())
        return false;
    type(QStringLiteral("\t"));
    return true;
}

void TextView::keyPressEvent(QKeyEvent* event) {
    bool extends = false;
    const bool scrolls = event->modifiers() == Qt::ControlModifier;
    if (scrolls && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        scrollRows(event->key() == Qt::Key_Up ? -1 : 1);
    } else if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        QContextMenuEvent asked(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        contextMenuEvent(&asked);
    } else if (const CommandKey* command = commandOf(*event)) {
        carryOut(command->command);
    } else if (const MovementKey* found = movementOf(*event, extends)) {
        follow(found->movement, extends);
    } else if (isEditable() && isEnter(*event)) {
        edit(model_->selection(), "\n", TextDocument::Joining::WithPrevious);
    } else if (isEditable() && eraseByKey(*event)) {
        event->accept();
    } else if (isEditable() && isTyped(*event)) {
        type(event->text());
    } else {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void TextView::type(const QString& text) {
    edit(model_->selection(), text.toStdString(), TextDocument::Joining::WithPrevious);
}

bool TextView::eraseByKey(const QKeyEvent& event) {
    const Erasure* found = erasureOf(event);
    if (!found)
        return false;
    if (anchor_ != caret_) {
        edit(model_->selection(), "");
    } else {
        const TextPosition to = found->to(*document_, caret_);
        edit({std::min(caret_, to), std::max(caret_, to)}, "", TextDocument::Joining::WithPrevious);
    }
    return true;
}

bool TextView::canDo(Command command) const {
    const bool selected = anchor_ != caret_;
    if (!model_ || model_->isRich())
        return false;
    switch (command) {
    case Command::Undo:
        return isEditable() && document_->canUndo();
    case Command::Redo:
        return isEditable() && document_->canRedo();
    case Command::Cut:
    case Command::Delete:
        return isEditable() && selected;
    case Command::Copy:
        return selected;
    case Command::Paste: {
        const QMimeData* held = isEditable() ? QApplication::clipboard()->mimeData() : nullptr;
        return held && held->hasText();
    }
    case Command::SelectAll:
        break;
    }
    return document_->end() != TextPosition();
}

void TextView::carryOut(Command command) {
    if (!canDo(command))
        return;
    const Form::Handling now(model_->form());
    switch (command) {
    case Command::Undo:
    case Command::Redo:
        if ((command == Command::Undo ? model_->userUndo() : model_->userRedo()) && model_)
            showPosition(caret_);
        break;
    case Command::Cut:
        if (copy())
            edit(model_->selection(), "");
        break;
    case Command::Copy:
        copy();
        break;
    case Command::Paste:
        paste(QApplication::clipboard()->text());
        break;
    case Command::Delete:
        edit(model_->selection(), "");
        break;
    case Command::SelectAll:
        select({}, document_->end());
        offerSelection();
        break;
    }
}

bool TextView::copy() const {
    const text::TextRange selected = model_->selection();
    if (document_->offsetOf(selected.to) - document_->offsetOf(selected.from) > largestCopy) {
        QApplication::beep();
        return false;
    }
    QApplication::clipboard()->setText(QString::fromStdString(model_->selectedText()));
    return true;
}

void TextView::offerSelection() const {
    QClipboard* clipboard = QApplication::clipboard();
    if (!model_ || !clipboard->supportsSelection() || anchor_ == caret_)
        return;
    const text::TextRange selected = model_->selection();
    if (document_->offsetOf(selected.to) - document_->offsetOf(selected.from) < largestOffer)
        clipboard->setText(QString::fromStdString(model_->selectedText()), QClipboard::Selection);
}

void TextView::paste(const QString& text) {
    if (isEditable() && !text.isEmpty())
        edit(model_->selection(), text.toStdString());
}

} // namespace genutil
