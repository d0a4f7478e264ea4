#pragma once

#include "hostif/printed_page.h"

#include <QAbstractScrollArea>
#include <QImage>

namespace genutil {

// Shows a page on its sheet. What is scrolled past either end of it turns the page.
class PrintedPageView : public QAbstractScrollArea {
public:
    PrintedPageView(PrintedPage& model, QWidget* parent);

protected:
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void modelChanged();
    // The page at its zoom, in pixels of the view.
    double shownPercent() const;
    QSize sheetSize() const;
    void setRanges();
    // Good until the next call.
    QImage picture(const QSize& wanted);
    void zoomBy(int steps);
    // Further into the page, or on to the next one; back for negative steps.
    void advance(int steps, int length);
    void turn(int pages);

    PrintedPage& model_;
    std::size_t shownPage_ = 0;
    PagePicture painted_; // also one that has failed, which is not asked for again and again
    QSize paintedSize_;
    std::size_t paintedPage_ = 0;
    int wheelTurned_ = 0; // eighths of a degree, of a wheel that is about to turn the page
};

} // namespace genutil
