#pragma once

#include "host/host.h"
#include "host/plot_painter.h"

#include <QTimer>
#include <QWidget>

namespace kestal {

class CurrentJob;

/// The plot of the open job: the whole of it at first; the wheel and the keys + and - zoom, dragging and the
/// arrow keys move, 0 shows the whole again. The scale bar can be dragged from its default position.
class PlotView : public QWidget {
public:
    /// `marks` must live as long as the view does.
    explicit PlotView(ViewMarks& marks);
    /// A job of very many points is read while the user goes on working.
    void showJob(const CurrentJob& job);
    /// Draws again after marks have changed.
    void marksChanged();

    const PlotFrame& frame() const { return frame_; }
    const PlotData& data() const { return data_; }
    /// What stands in place of a plot; "" where there is one.
    QString sentence() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void readOn();
    void showAll();
    void zoom(double factor, QPointF keeping);
    void move(QPointF pixels);
    double wholeScale() const;
    ScaleBar scaleBar() const;
    bool hasScaleBar() const { return marks_.showsScaleBar() && !scene_.isInDegrees; }

    enum class Drag { None, Plot, ScaleBar };

    ViewMarks& marks_;
    bool hasJob_ = false;
    std::unique_ptr<PlotReader> reader_; // while it has not read all
    QTimer readingTimer_;
    PlotData data_;
    PlotScene scene_;
    PlotFrame frame_;
    bool showsAll_ = true;
    QPointF barPlace_{0.7, 0.88}; // of the dragged scale bar's left end, in parts of the widget
    Drag drag_ = Drag::None;
    QPointF dragFrom_;
};

} // namespace kestal
