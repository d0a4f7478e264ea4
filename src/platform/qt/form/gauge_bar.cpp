#include "platform/qt/form/gauge_bar.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>

namespace genutil {

GaugeBar::GaugeBar(QWidget* parent) : QProgressBar(parent) {
    setRange(0, 100);
    setValue(0);
}

void GaugeBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.frameShape = QFrame::Panel;
    frame.lineWidth = 1;
    frame.state |= QStyle::State_Sunken;

    const QRect inside = rect().adjusted(1, 1, -1, -1);
    QRect filled = inside;
    filled.setWidth(inside.width() * value() / maximum());
    const QRect empty = inside.adjusted(filled.width(), 0, 0, 0);
    const QString percentage = QString::number(value()) + QLatin1Char('%');

    // Each half shows the same text in the colour that reads well on it.
    const auto paintHalf = [&](const QRect& half, QPalette::ColorRole ground, QPalette::ColorRole ink) {
        painter.setClipRect(half);
        painter.fillRect(half, palette().color(ground));
        painter.setPen(palette().color(ink));
        painter.drawText(inside, Qt::AlignCenter, percentage);
    };
    if (filled.width() > 0)
        paintHalf(filled, QPalette::Highlight, QPalette::HighlightedText);
    if (empty.width() > 0)
        paintHalf(empty, QPalette::Base, QPalette::Text);
    painter.setClipping(false);
    style()->drawControl(QStyle::CE_ShapedFrame, &frame, &painter, this);
}

} // namespace genutil
