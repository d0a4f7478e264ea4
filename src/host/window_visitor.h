#pragma once

#include <QPointer>
#include <QSet>
#include <QTimer>

#include <functional>
#include <string>

class QWidget;

namespace kestal {

/// Lets the event loop run for a while.
void settle(int milliseconds);

/// The windows that are visible now, menus and tool tips left out.
QList<QPointer<QWidget>> visibleWindows();

/// Runs the event loop until the windows that are visible now are gone; the component's windows leave the end
/// of the program to the host. The result is the exit code.
int runUntilClosed();

/// While it lives, every window that appears is handed to `visit` once it has had time to paint, and is
/// closed after that; so a dialog that waits for its user ends by itself.
class WindowVisitor {
public:
    /// An exception of `visit` is kept in `failure`.
    explicit WindowVisitor(std::function<void(QWidget&)> visit);

    int visited() const { return visited_; }
    const std::string& failure() const { return failure_; }

private:
    void look();

    std::function<void(QWidget&)> visit_;
    QSet<QWidget*> known_;
    QPointer<QWidget> candidate_;
    bool busy_ = false;
    int visited_ = 0;
    std::string failure_;
    QTimer timer_;
};

} // namespace kestal
