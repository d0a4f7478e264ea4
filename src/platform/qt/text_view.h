#pragma once

#include "platform/qt/row_layout.h"
#include "text/text_document.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>

#include <memory>

namespace genutil {

// Shows a plain text of any size: only the rows that are seen are laid out and painted. The user scrolls with
// the keys of a viewer, the wheel and the bars, and selects with the mouse, with Shift and the keys, or with
// Ctrl+A.
class TextView : public QAbstractScrollArea {
public:
    explicit TextView(QWidget* parent = nullptr);

    // Shows another text from its start. Never null.
    void setDocument(std::shared_ptr<const text::TextDocument> document);
    void setWrapsLines(bool wraps);

    // What a key of namespace key does here; False for a key that the view has no use for. `extends` moves
    // the end of the selection instead of the text.
    bool followKey(int code, bool extends);

    TextPosition firstVisible() const { return top_; }
    // The text of the rows that are seen, one to a line.
    QString visibleText() const;
    QString selectedText() const;
    void selectAll();

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void timerEvent(QTimerEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void renewLayout();
    void updateBars();
    // Rows that fit whole into the view, at least 1.
    int pageRows() const;
    void scrollRows(int rows);
    void scrollTo(TextPosition top);
    void showPosition(TextPosition position);
    void moveCursor(int code);
    void dragTo(QPoint point);
    TextPosition positionAt(QPoint point) const;
    TextPosition rowsAway(TextPosition from, int rows) const;
    void paintRow(QPainter& painter, const TextRow& row, double y) const;
    int barValue(TextPosition position) const;

    std::shared_ptr<const text::TextDocument> document_ = std::make_shared<text::TextDocument>();
    std::unique_ptr<RowLayout> rows_;
    bool wraps_ = false;
    TextPosition top_;     // the start of the first row that is seen
    TextPosition lastTop_; // the first row when the text's end is seen
    TextPosition anchor_;  // where the selection began
    TextPosition cursor_;  // where it ends; before or behind the anchor
    bool syncingBars_ = false;
    int wheelRest_ = 0; // eighths of a degree not yet scrolled
    QBasicTimer dragTimer_;
};

} // namespace genutil
