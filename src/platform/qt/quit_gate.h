#pragma once

#include "hostif/form.h"
#include "platform/qt/form/form_window.h"

#include <QApplication>
#include <QEvent>

#include <functional>
#include <utility>

namespace genutil {

// Holds back a quit while a form is occupied, and repeats it afterwards. What has been asked is answered
// first, and no form goes while its own handler runs.
class QuitGate : public QObject {
public:
    explicit QuitGate(std::function<bool()> isOccupied) : isOccupied_(std::move(isOccupied)) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Quit || !isOccupied_())
            return false;
        event->ignore();
        waits_ = true;
        // What can be left without an answer goes. A form that refuses refuses the quit.
        QWidget* const front = QApplication::activeModalWidget();
        if (front && !front->close())
            if (const auto* window = dynamic_cast<FormWindow*>(front))
                waits_ = window->form() && !window->form()->hearsUser();
        return true;
    }
    // Something that occupied a form has ended.
    void goOn() {
        if (std::exchange(waits_, false) && QCoreApplication::instance())
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    }

private:
    std::function<bool()> isOccupied_;
    bool waits_ = false;
};

} // namespace genutil
