#include "platform/qt/form/scrolled_part.h"

#include <QApplication>
#include <QEvent>
#include <QStyle>

namespace genutil {
namespace {

constexpr int leastLength = 60;  // pixels
constexpr int surroundings = 24; // of what has the focus, which come into view with it

class WheelGuard : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* box, QEvent* event) override {
        if (event->type() != QEvent::Wheel || static_cast<QWidget*>(box)->hasFocus())
            return false;
        event->ignore();
        return true;
    }
};

} // namespace

void guardWheel(QWidget* box) {
    box->setFocusPolicy(Qt::StrongFocus); // not by the wheel
    box->installEventFilter(new WheelGuard(box));
}

ScrolledPart::ScrolledPart(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(new QWidget);
    widget()->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { follow(now); });
}

// While what it holds is deleted, the focus goes on to what is left of it.
ScrolledPart::~ScrolledPart() {
    qApp->disconnect(this);
}

QSize ScrolledPart::sizeHint() const {
    return widget()->sizeHint();
}

QSize ScrolledPart::minimumSizeHint() const {
    return sizeHint().boundedTo({leastLength, leastLength});
}

void ScrolledPart::follow(QWidget* focused) {
    if (!focused || !widget()->isAncestorOf(focused))
        return;
    // The toolkit would be content with the caret of a box.
    const QRect place(focused->mapTo(widget(), QPoint()), focused->size());
    const QPoint middle = place.center();
    ensureVisible(
        middle.x(), middle.y(), place.width() / 2 + surroundings, place.height() / 2 + surroundings);
}

QSize fitted(const QWidget& dialog, QSize wanted, QSize room) {
    const int bar = dialog.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &dialog);
    const bool isCutBelow = wanted.height() > room.height();
    const bool isCutBeside = wanted.width() + (isCutBelow ? bar : 0) > room.width();
    if (isCutBelow)
        wanted.rwidth() += bar;
    if (isCutBeside)
        wanted.rheight() += bar;
    return wanted.boundedTo(room);
}

} // namespace genutil
