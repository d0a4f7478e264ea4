#include "platform/qt/tie.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QFocusEvent>
#include <QMouseEvent>

namespace genutil {
namespace {

// Whether the focus has really left: not for a menu, and not because the whole window lost it.
bool leavesTheForm(Qt::FocusReason reason) {
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
           reason != Qt::MenuBarFocusReason;
}

// Whether the mouse is over the widget itself: a child that does not use a movement passes it on to its
// parent.
bool isOver(const QWidget& widget, const QMouseEvent& event) {
    const QWidget* child = widget.childAt(event.position().toPoint());
    return !child || !child->isEnabled();
}

} // namespace

InputTie::InputTie(QWidget* view, Control& model, Apply apply)
    : Tie(view, model, std::move(apply)), view_(view), model_(model) {
    view->installEventFilter(this);
    view->setMouseTracking(true);
    if (auto* area = qobject_cast<QAbstractScrollArea*>(view)) {
        area->viewport()->installEventFilter(this);
        area->viewport()->setMouseTracking(true);
    }
}

bool InputTie::eventFilter(QObject* watched, QEvent* event) {
    const bool ofView = watched == view_;
    switch (event->type()) {
    case QEvent::FocusIn:
        if (ofView)
            report(model_, [this] { model_.form().moveFocus(&model_); });
        break;
    case QEvent::FocusOut:
        // A control that takes the focus over says so itself.
        if (ofView && !QApplication::focusWidget() &&
            leavesTheForm(static_cast<QFocusEvent*>(event)->reason()) &&
            model_.form().activeControl() == &model_)
            report(model_, [this] { model_.form().moveFocus(nullptr); });
        break;
    case QEvent::MouseMove:
        if (isOver(*static_cast<QWidget*>(watched), *static_cast<QMouseEvent*>(event)))
            report(model_, [this] { model_.mouseMove(); });
        break;
    default:
        break;
    }
    return false;
}

} // namespace genutil
