#include "platform/qt/print/printed_page_view.h"

#include "platform/qt/tie.h"
#include "platform/qt/twip_scale.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace genutil {
namespace {

constexpr int margin = 12; // pixels around the sheet
constexpr int shadow = 3;
constexpr int wheelStep = 120;
// A sheet that is larger is painted coarser and stretched.
constexpr double mostDots = 32e6;

} // namespace

PrintedPageView::PrintedPageView(PrintedPage& model, QWidget* parent)
    : QAbstractScrollArea(parent), model_(model) {
    setObjectName(QString::fromStdString(model.name()));
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
    new InputTie(this, model, [this](Aspect aspect) {
        if (aspect == Aspect::Value)
            modelChanged();
    });
    modelChanged();
}

void PrintedPageView::modelChanged() {
    setAccessibleName(QStringLiteral("Page %1").arg(model_.page.get()));
    setRanges();
    if (std::exchange(shownPage_, model_.page) != model_.page)
        verticalScrollBar()->setValue(0);
    viewport()->update();
}

double PrintedPageView::shownPercent() const {
    const TwipScale scale = TwipScale::ofScreen();
    // The room while there are no scroll bars, which come and go with what is shown.
    const QSize room = maximumViewportSize() - QSize(2 * margin, 2 * margin);
    const double byWidth = 100.0 * scale.twips(room.width()) / model_.sheetWidth;
    const double byHeight = 100.0 * scale.twips(room.height()) / model_.sheetHeight;
    constexpr double least = 5;
    if (model_.zoom == PrintedPage::wholePage)
        return std::max(least, std::min(byWidth, byHeight));
    if (model_.zoom != PrintedPage::pageWidth)
        return model_.zoom;
    const int bar = byWidth > byHeight ? verticalScrollBar()->sizeHint().width() : 0;
    return std::max(least, byWidth * (room.width() - bar) / std::max(1, room.width()));
}

QSize PrintedPageView::sheetSize() const {
    const TwipScale scale = TwipScale::ofScreen();
    const double factor = shownPercent() / 100;
    return {std::max(1, int(model_.sheetWidth * factor / scale.twipsPerPixel())),
        std::max(1, int(model_.sheetHeight * factor / scale.twipsPerPixel()))};
}

void PrintedPageView::setRanges() {
    const QSize beyond = sheetSize() + QSize(2 * margin, 2 * margin) - viewport()->size();
    const int step = fontMetrics().lineSpacing() * 3;
    for (const auto& [bar, range, page] :
        {std::tuple(horizontalScrollBar(), beyond.width(), viewport()->width()),
            std::tuple(verticalScrollBar(), beyond.height(), viewport()->height())}) {
        bar->setRange(0, std::max(0, range));
        bar->setPageStep(std::max(1, page - step));
        bar->setSingleStep(step);
    }
}

QImage PrintedPageView::picture(const QSize& wanted) {
    const double ratio = devicePixelRatioF();
    const double dots = double(wanted.width()) * wanted.height() * ratio * ratio;
    const double scale = ratio * std::min(1.0, std::sqrt(mostDots / std::max(1.0, dots)));
    const QSize size(std::max(1, int(wanted.width() * scale)), std::max(1, int(wanted.height() * scale)));
    if (paintedSize_ != size || paintedPage_ != model_.page) {
        paintedSize_ = size;
        paintedPage_ = model_.page;
        painted_ = model_.picture(paintedPage_, size.width(), size.height());
    }
    if (painted_.pixels.empty())
        return {};
    return QImage(reinterpret_cast<const uchar*>(painted_.pixels.data()), painted_.width, painted_.height,
        QImage::Format_RGB32);
}

void PrintedPageView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().color(QPalette::Mid));
    const QSize size = sheetSize();
    const auto begin = [](int room, int length, const QScrollBar* bar) {
        return bar->maximum() > 0 ? margin - bar->value() : (room - length) / 2;
    };
    const QPoint corner(begin(viewport()->width(), size.width(), horizontalScrollBar()),
        begin(viewport()->height(), size.height(), verticalScrollBar()));
    const QRect sheet(corner, size);
    painter.fillRect(sheet.translated(shadow, shadow), palette().color(QPalette::Shadow));
    painter.fillRect(sheet, Qt::white);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(sheet, picture(size));
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(sheet.adjusted(-1, -1, 0, 0));
    }
}

void PrintedPageView::resizeEvent(QResizeEvent*) {
    setRanges();
    viewport()->update();
}

void PrintedPageView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    viewport()->update();
}

void PrintedPageView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void PrintedPageView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void PrintedPageView::zoomBy(int steps) {
    report(model_, [&] { model_.userZoom(steps, shownPercent()); });
}

void PrintedPageView::turn(int pages) {
    const std::size_t before = model_.page;
    report(model_, [&] { model_.userTurn(pages); });
    // Going back, the reader comes from the end of the page.
    if (pages < 0 && model_.page != before)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void PrintedPageView::advance(int steps, int length) {
    QScrollBar* bar = verticalScrollBar();
    if (bar->value() == (steps > 0 ? bar->maximum() : 0))
        turn(steps);
    else
        bar->setValue(bar->value() + steps * length);
}

void PrintedPageView::keyPressEvent(QKeyEvent* event) {
    const int page = verticalScrollBar()->pageStep();
    const int line = verticalScrollBar()->singleStep();
    const bool isWide = horizontalScrollBar()->maximum() > 0;
    switch (event->key()) {
    case Qt::Key_PageDown:
        return advance(1, page);
    case Qt::Key_PageUp:
        return advance(-1, page);
    case Qt::Key_Space:
        return advance(event->modifiers() & Qt::ShiftModifier ? -1 : 1, page);
    case Qt::Key_Down:
        return advance(1, line);
    case Qt::Key_Up:
        return advance(-1, line);
    case Qt::Key_Right:
        return isWide ? horizontalScrollBar()->triggerAction(QScrollBar::SliderSingleStepAdd) : turn(1);
    case Qt::Key_Left:
        return isWide ? horizontalScrollBar()->triggerAction(QScrollBar::SliderSingleStepSub) : turn(-1);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return zoomBy(1);
    case Qt::Key_Minus:
        return zoomBy(-1);
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void PrintedPageView::wheelEvent(QWheelEvent* event) {
    const int turned = event->angleDelta().y();
    QScrollBar* bar = verticalScrollBar();
    const bool isAtEnd = bar->value() == (turned < 0 ? bar->maximum() : 0);
    event->accept();
    if (!(event->modifiers() & Qt::ControlModifier) && !isAtEnd) {
        wheelTurned_ = 0;
        return QAbstractScrollArea::wheelEvent(event);
    }
    if ((turned < 0) != (wheelTurned_ < 0))
        wheelTurned_ = 0;
    wheelTurned_ += turned;
    const int steps = wheelTurned_ / wheelStep;
    wheelTurned_ -= steps * wheelStep;
    if (steps == 0)
        return;
    if (event->modifiers() & Qt::ControlModifier)
        zoomBy(steps);
    else
        turn(-steps);
}

} // namespace genutil
