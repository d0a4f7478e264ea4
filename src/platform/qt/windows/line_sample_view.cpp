#include "platform/qt/windows/line_sample_view.h"

#include "platform/qt/tie.h"

#include <QPainter>

namespace genutil {
namespace {

constexpr int sampleLength = 56, sampleHeight = 14, sideMargin = 8; // pixels
constexpr double headLength = 8, headHalf = 4;                      // of an arrow

// In pixels of the pattern, so that a thick line has no longer dashes than a thin one.
QList<qreal> pattern(LineStyle style) {
    switch (style) {
    case LineStyle::Dashed:
        return {8, 4};
    case LineStyle::Dotted:
        return {2, 3};
    case LineStyle::DashDot:
        return {8, 3, 2, 3};
    case LineStyle::Solid:
        break;
    }
    return {};
}

} // namespace

LineSampleView::LineSampleView(QWidget* parent, Stroke stroke) : QWidget(parent), stroke_(stroke) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void LineSampleView::setLine(Rgb color, LineStyle style, int pixels) {
    color_ = color;
    style_ = style;
    lineWidth_ = pixels;
    update();
}

QSize LineSampleView::sizeHint() const {
    return {sampleLength + 2 * sideMargin, sampleHeight};
}

QLineF LineSampleView::strokeIn(const QRectF& area) const {
    const QPointF end(area.right(), area.center().y());
    switch (stroke_) {
    case Stroke::UpperBarb:
        return {end + QPointF(-headLength, -headHalf), end};
    case Stroke::LowerBarb:
        return {end + QPointF(-headLength, headHalf), end};
    case Stroke::Line:
        break;
    }
    return {QPointF(area.left(), end.y()), end};
}

void LineSampleView::paintEvent(QPaintEvent*) {
    QPen pen(QColor(color_.red, color_.green, color_.blue), lineWidth_);
    pen.setCapStyle(Qt::FlatCap);
    if (QList<qreal> dashes = pattern(style_); !dashes.isEmpty()) {
        for (qreal& length : dashes) // a pattern counts in widths of the pen
            length /= lineWidth_;
        pen.setDashPattern(dashes);
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, stroke_ != Stroke::Line);
    painter.setPen(pen);
    painter.drawLine(strokeIn(QRectF(rect()).adjusted(sideMargin, 0, -sideMargin, 0)));
}

void bind(LineSampleView* view, LineSample& model) {
    view->setObjectName(QString::fromStdString(model.name()));
    const auto apply = [view, &model](Aspect) {
        view->setLine(model.color, model.style, model.lineWidth);
        view->setVisible(model.visible);
    };
    new Tie(view, model, apply);
    apply(Aspect::Colour);
}

} // namespace genutil
