#include "host/plot_view.h"

#include "host/current_job.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace kestal {
namespace {

constexpr double zoomStep = 1.25;
constexpr double leastZoom = 0.05; // of the scale that shows all
constexpr double mostZoom = 1e5;
constexpr double margin = 0.1;   // of the widget, around the whole
constexpr double arrowStep = 40; // pixels

} // namespace

PlotView::PlotView(ViewMarks& marks) : marks_(marks) {
    setObjectName("plot");
    setAccessibleName("Plot of the job");
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(120, 80);
    readingTimer_.setSingleShot(true);
    connect(&readingTimer_, &QTimer::timeout, this, [this] { readOn(); });
}

void PlotView::showJob(const CurrentJob& job) {
    hasJob_ = job.isOpen();
    data_ = {};
    reader_ = hasJob_ ? std::make_unique<PlotReader>(job) : nullptr;
    readOn();
}

// The plot is shown when all is read.
void PlotView::readOn() {
    constexpr int piece = 40; // milliseconds
    if (reader_ && reader_->read(piece)) {
        data_ = reader_->take();
        reader_.reset();
    }
    if (reader_)
        readingTimer_.start();
    scene_ = makeScene(data_, marks_);
    showAll();
    setAccessibleDescription(
        sentence().isEmpty() ? QString("%1 points, %2 lines").arg(data_.points.size()).arg(data_.lines.size())
                             : sentence());
}

void PlotView::marksChanged() {
    const bool wasInDegrees = scene_.isInDegrees;
    scene_ = makeScene(data_, marks_);
    if (wasInDegrees != scene_.isInDegrees)
        showAll();
    update();
}

QString PlotView::sentence() const {
    if (!hasJob_)
        return "No job is open";
    if (reader_)
        return "The points are being read";
    if (!data_.fault.isEmpty())
        return data_.fault;
    return data_.points.empty() ? "This job has no points yet" : "";
}

double PlotView::wholeScale() const {
    // A single point has no extent.
    const double width = std::max(scene_.bounds.width(), 1e-6);
    const double height = std::max(scene_.bounds.height(), 1e-6);
    constexpr double mostPerUnit = 1e7; // pixels
    return std::clamp((1 - 2 * margin) * std::min(frame_.size.width() / width, frame_.size.height() / height),
        1e-9, mostPerUnit);
}

void PlotView::showAll() {
    frame_.size = size();
    frame_.centre = scene_.bounds.center();
    frame_.scale = wholeScale();
    showsAll_ = true;
    update();
}

void PlotView::zoom(double factor, QPointF keeping) {
    const double whole = wholeScale();
    const double next = std::clamp(frame_.scale * factor, whole * leastZoom, whole * mostZoom);
    const QPointF place = frame_.toPlace(keeping);
    frame_.scale = next;
    frame_.centre += place - frame_.toPlace(keeping);
    showsAll_ = false;
    update();
}

void PlotView::move(QPointF pixels) {
    frame_.centre += QPointF(-pixels.x(), pixels.y()) / frame_.scale;
    showsAll_ = false;
    update();
}

ScaleBar PlotView::scaleBar() const {
    constexpr double fromEdge = 16;
    ScaleBar bar = scaleBarOf(frame_, {});
    const QPointF place = marks_.isSet(Mark::DefaultPosition)
                              ? QPointF(fromEdge, height() - fromEdge - bar.place.height())
                              : QPointF(barPlace_.x() * width(), barPlace_.y() * height());
    bar.place.moveTopLeft(place);
    return bar;
}

void PlotView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintPlot(painter, data_, scene_, frame_, marks_);
    if (const QString text = sentence(); !text.isEmpty()) {
        painter.setPen(QColor(150, 158, 166));
        painter.drawText(rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, text);
    } else if (hasScaleBar()) {
        paintScaleBar(painter, scaleBar());
    }
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void PlotView::resizeEvent(QResizeEvent*) {
    frame_.size = size();
    if (showsAll_)
        showAll();
}

void PlotView::wheelEvent(QWheelEvent* event) {
    constexpr double notch = 120;
    zoom(std::pow(zoomStep, event->angleDelta().y() / notch), event->position());
    event->accept();
}

void PlotView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const QRectF bar = scaleBar().place;
    const bool isOnBar = hasScaleBar() && bar.contains(event->position());
    drag_ = isOnBar ? Drag::ScaleBar : Drag::Plot;
    dragFrom_ = isOnBar ? event->position() - bar.topLeft() : event->position();
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
    if (drag_ == Drag::Plot) {
        move(event->position() - dragFrom_);
        dragFrom_ = event->position();
    } else if (drag_ == Drag::ScaleBar) {
        const QPointF place = event->position() - dragFrom_;
        barPlace_ = {std::clamp(place.x() / width(), 0.0, 0.9), std::clamp(place.y() / height(), 0.0, 0.9)};
        marks_.choose(Mark::DefaultPosition, false);
        update();
    }
}

void PlotView::mouseReleaseEvent(QMouseEvent*) {
    drag_ = Drag::None;
}

void PlotView::keyPressEvent(QKeyEvent* event) {
    const QPointF middle = QRectF(rect()).center();
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return zoom(zoomStep, middle);
    case Qt::Key_Minus:
        return zoom(1 / zoomStep, middle);
    case Qt::Key_0:
        return showAll();
    case Qt::Key_Left:
        return move({arrowStep, 0});
    case Qt::Key_Right:
        return move({-arrowStep, 0});
    case Qt::Key_Up:
        return move({0, arrowStep});
    case Qt::Key_Down:
        return move({0, -arrowStep});
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace kestal
