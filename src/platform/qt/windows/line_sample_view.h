#pragma once

#include "hostif/controls.h"

#include <QWidget>

namespace genutil {

// Shows a line of a legend: from side to side, or as a stroke of an arrow's head at the right end of one.
class LineSampleView : public QWidget {
public:
    enum class Stroke { Line, UpperBarb, LowerBarb };

    explicit LineSampleView(QWidget* parent, Stroke stroke = Stroke::Line);

    void setLine(Rgb color, LineStyle style, int pixels);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLineF strokeIn(const QRectF& area) const;

    Stroke stroke_;
    Rgb color_;
    LineStyle style_ = LineStyle::Solid;
    int lineWidth_ = 1;
};

void bind(LineSampleView* view, LineSample& model);

} // namespace genutil
