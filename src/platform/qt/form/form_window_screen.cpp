// What a window shows while its host computes and handles no events.

#include "platform/qt/form/form_window.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPointer>
#include <QThread>
#include <QWindow>

#include <chrono>
#include <utility>

namespace genutil {
namespace {

// The one that a host has shown or called last.
QPointer<FormWindow>& windowInFront() {
    static QPointer<FormWindow> window;
    return window;
}

// Runs events, the user's excepted, until `isDone`, or for so long.
template<class IsDone>
void runWindowEvents(std::chrono::milliseconds atMost, const IsDone& isDone) {
    const QDeadlineTimer limit(atMost);
    for (;;) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        if (isDone() || limit.hasExpired())
            return;
        QThread::msleep(1);
    }
}

} // namespace

void FormWindow::waitUntilSeen() {
    constexpr std::chrono::milliseconds atMost{500};
    const QPointer<FormWindow> here(this);
    runWindowEvents(atMost, [this, here] { return !here || !form_ || windowHandle()->isExposed(); });
    if (here && form_)
        repaint();
    windowInFront() = here;
}

void FormWindow::repaintView(const Control& control) {
    if (!paintBudget_.allows())
        return;
    const PaintBudget::Spending spending(paintBudget_);
    // Captions held back during a burst come first.
    if (QWidget* view = viewOf(control)) {
        QCoreApplication::sendPostedEvents(view, QEvent::MetaCall);
        view->repaint();
    }
}

void FormWindow::bringToFront() {
    const QPointer<FormWindow> before = std::exchange(windowInFront(), this);
    if (before != this || raiseGate_.pass()) {
        raise();
        // The toolkit keeps the request until it waits for events, or paints: a dot will do.
        repaint(0, 0, 1, 1);
    }
    if (!before || before == this || !paintBudget_.allows())
        return;
    // What the window in front has covered is painted once the window manager has changed their places.
    const PaintBudget::Spending spending(paintBudget_);
    constexpr std::chrono::milliseconds atMost{100};
    const QPointer<FormWindow> here(this);
    wasPainted_ = false;
    runWindowEvents(atMost, [this, here] { return !here || wasPainted_; });
}

} // namespace genutil
