#include "host/window_visitor.h"

#include <QApplication>
#include <QEventLoop>
#include <QWidget>

namespace kestal {

void settle(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

QList<QPointer<QWidget>> visibleWindows() {
    QList<QPointer<QWidget>> windows;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (const Qt::WindowType type = window->windowType();
            window->isVisible() && (type == Qt::Window || type == Qt::Dialog || type == Qt::Tool))
            windows += QPointer(window);
    return windows;
}

int runUntilClosed() {
    // The toolkit counts no windows of forms, and would end the program with a message box.
    QApplication::setQuitOnLastWindowClosed(false);
    const auto quitWithoutWindows = [] {
        if (visibleWindows().isEmpty())
            QApplication::quit();
    };
    const auto windows = visibleWindows();
    for (QWidget* window : windows)
        QObject::connect(window, &QObject::destroyed, qApp, quitWithoutWindows);
    return windows.isEmpty() ? 0 : QApplication::exec();
}

WindowVisitor::WindowVisitor(std::function<void(QWidget&)> visit) : visit_(std::move(visit)) {
    constexpr int paintingTime = 150;
    for (QWidget* window : visibleWindows())
        known_ += window;
    QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
    timer_.start(paintingTime);
}

// A window is visited at the second look that finds it.
void WindowVisitor::look() {
    if (busy_)
        return;
    busy_ = true;
    for (QWidget* window : visibleWindows()) {
        if (known_.contains(window))
            continue;
        if (candidate_ != window) {
            candidate_ = window;
            break;
        }
        const QPointer<QWidget> visitee(window);
        ++visited_;
        try {
            visit_(*window);
        } catch (const std::exception& error) {
            failure_ = error.what();
        }
        candidate_ = nullptr;
        if (visitee)
            visitee->close();
        break;
    }
    busy_ = false;
}

} // namespace kestal
