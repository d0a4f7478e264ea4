// Selecting with the mouse, and the context menu.
#include "platform/qt/text/character_steps.h"
#include "platform/qt/text/text_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QCursor>
#include <QMenu>

#include <algorithm>
#include <array>

namespace genutil {

using text::TextPosition;
using text::TextRange;

namespace {

constexpr int dragInterval = 40; // milliseconds between scrolls while dragging beyond the edge

struct MenuEntry {
    ReportText::Command command;
    const char* text;
    QKeySequence::StandardKey key;
    bool beginsGroup = false;
};

constexpr std::array menuEntries{MenuEntry{ReportText::Command::Undo, "&Undo", QKeySequence::Undo},
    MenuEntry{ReportText::Command::Redo, "&Redo", QKeySequence::Redo},
    MenuEntry{ReportText::Command::Cut, "Cu&t", QKeySequence::Cut, true},
    MenuEntry{ReportText::Command::Copy, "&Copy", QKeySequence::Copy},
    MenuEntry{ReportText::Command::Paste, "&Paste", QKeySequence::Paste},
    MenuEntry{ReportText::Command::Delete, "&Delete", QKeySequence::Delete},
    MenuEntry{ReportText::Command::SelectAll, "Select &All", QKeySequence::SelectAll, true}};

TextRange placeItself(const text::TextDocument&, TextPosition position) {
    return {position, position};
}

} // namespace

// Selects from the unit first taken hold of to the one reached, both whole.
void TextView::selectUnits(TextPosition reached) {
    const TextRange unit = unitAt_(*document_, reached);
    if (unit.from < heldUnit_.from)
        select(heldUnit_.to, unit.from);
    else
        select(heldUnit_.from, std::max(unit.to, heldUnit_.to));
}

void TextView::mousePressEvent(QMouseEvent* event) {
    const TextPosition place = positionAt(event->pos());
    if (event->button() == Qt::MiddleButton && QApplication::clipboard()->supportsSelection()) {
        select(place, place);
        paste(QApplication::clipboard()->text(QClipboard::Selection));
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    const bool third = sinceDoubleClick_.isValid() &&
                       sinceDoubleClick_.elapsed() < QApplication::doubleClickInterval() &&
                       heldUnit_.from.line == place.line;
    sinceDoubleClick_.invalidate();
    unitAt_ = third ? lineAt : placeItself;
    const bool extends = event->modifiers() & Qt::ShiftModifier;
    heldUnit_ = extends ? TextRange{anchor_, anchor_} : unitAt_(*document_, place);
    selectUnits(place);
}

void TextView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    unitAt_ = wordAt;
    heldUnit_ = wordAt(*document_, positionAt(event->pos()));
    selectUnits(heldUnit_.from);
    sinceDoubleClick_.start();
}

void TextView::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton) || !unitAt_)
        return;
    dragTo(event->pos());
    if (viewport()->rect().contains(event->pos()))
        dragTimer_.stop();
    else if (!dragTimer_.isActive())
        dragTimer_.start(dragInterval, this);
}

void TextView::mouseReleaseEvent(QMouseEvent* event) {
    dragTimer_.stop();
    if (event->button() == Qt::LeftButton && unitAt_)
        offerSelection();
    unitAt_ = nullptr;
}

void TextView::dragTo(QPoint point) {
    const TextPosition reached = positionAt(point);
    selectUnits(reached);
    showPosition(reached);
}

void TextView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == dragTimer_.timerId()) {
        if (unitAt_)
            dragTo(viewport()->mapFromGlobal(QCursor::pos()));
    } else if (event->timerId() == blinkTimer_.timerId()) {
        caretIsLit_ = !caretIsLit_;
        if (const auto place = placeOf(caret_))
            viewport()->update(place->toAlignedRect());
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

QMenu* TextView::makeMenu() {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const MenuEntry& entry : menuEntries) {
        if (entry.beginsGroup)
            menu->addSeparator();
        QAction* action = menu->addAction(QLatin1String(entry.text));
        action->setShortcut(entry.key);
        action->setShortcutVisibleInContextMenu(true);
        action->setEnabled(canDo(entry.command));
        connect(action, &QAction::triggered, this, [this, &entry] { carryOut(entry.command); });
    }
    menu->addSeparator();
    menu->addActions(actions());
    return menu;
}

void TextView::contextMenuEvent(QContextMenuEvent* event) {
    QPoint place = event->globalPos();
    if (event->reason() != QContextMenuEvent::Mouse) {
        const auto caret = placeOf(caret_);
        const QPoint below = caret ? caret->bottomLeft().toPoint() : QPoint();
        const QRect seen = viewport()->rect();
        place = viewport()->mapToGlobal(
            QPoint(std::clamp(below.x(), 0, seen.right()), std::clamp(below.y(), 0, seen.bottom())));
    }
    makeMenu()->popup(place);
    event->accept();
}

} // namespace genutil
