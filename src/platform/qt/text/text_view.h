#pragma once

#include "hostif/report_text.h"
#include "platform/qt/text/row_layout.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QElapsedTimer>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QMenu;

namespace genutil {

enum class Movement {
    Left,
    Right,
    WordLeft,
    WordRight,
    Up,
    Down,
    PageUp,
    PageDown,
    RowStart,
    RowEnd,
    TextStart,
    TextEnd
};

// Shows the plain text of a ReportText, of any size, and edits it: only the rows that are seen are laid out
// and painted. Caret and selection are the model's. While the model is locked there is no caret, the keys
// scroll as in a viewer, and Shift and the keys, the mouse or Ctrl+A select. Actions of the widget
// (addAction) stand at the end of its context menu.
class TextView : public QAbstractScrollArea {
public:
    explicit TextView(QWidget* parent = nullptr);

    // Shows the model's text and whatever becomes of it. Null lets go: what was shown stays as a mere
    // picture.
    void setModel(ReportText* model);
    const ReportText* model() const { return model_; }

    Event<int> zoomRequested; // steps of the wheel held with Ctrl, positive to enlarge

    const text::TextDocument& document() const { return *document_; }
    // Another after every change of the text.
    std::uint64_t revision() const { return revision_; }
    bool isEditable() const;
    text::TextPosition firstVisible() const { return top_; }
    // The text of the rows that are seen, one to a line.
    QString visibleText() const;
    // The character's or the caret's place in the viewport, as wide as the caret; nothing when its row is not
    // seen.
    std::optional<QRectF> placeOf(text::TextPosition position) const;
    text::TextPosition positionAt(QPoint point) const;
    void showPosition(text::TextPosition position);
    void select(text::TextPosition anchor, text::TextPosition caret);
    // An edit of the user's; False when the model takes none.
    bool edit(const text::TextRange& range, std::string_view replacement,
        text::TextDocument::Joining joining = text::TextDocument::Joining::Alone);

    QSize sizeHint() const override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void timerEvent(QTimerEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    using Command = ReportText::Command;
    // What a press of the mouse took hold of; dragging extends by such units.
    using UnitAt = text::TextRange (*)(const text::TextDocument&, text::TextPosition);

    void follow(Aspect aspect);
    void followEdit(const text::TextChange& change);
    void followSelection();
    void followLook();
    double wrapWidth() const;
    void renewLayout();
    void updateBars();
    double margin() const { return 3; } // pixels left of the text, and right of the widest line
    int caretWidth() const;
    // Rows that fit whole into the view, at least 1.
    int pageRows() const;
    void scrollRows(int rows);
    void scrollTo(text::TextPosition top);
    void showRow(const TextRow& row);
    text::TextPosition rowsAway(text::TextPosition from, int rows) const;
    int barValue(text::TextPosition position) const;

    void followKey(int code); // of namespace key
    void follow(Movement movement, bool extends);
    void scrollBy(Movement movement);
    void moveCaret(Movement movement, bool extends);
    text::TextPosition moved(Movement movement);
    text::TextPosition movedVertically(int rows);
    text::TextPosition movedInRow(bool toEnd) const;

    bool takesKey(const QKeyEvent& event) const;
    bool pressTab(const QKeyEvent& event);
    void type(const QString& text);
    bool eraseByKey(const QKeyEvent& event);
    bool canDo(Command command) const;
    void carryOut(Command command);
    bool copy() const;
    void offerSelection() const; // to the other programs' middle mouse button
    void paste(const QString& text);
    QMenu* makeMenu();

    void selectUnits(text::TextPosition reached);
    void dragTo(QPoint point);

    void paintRow(QPainter& painter, const TextRow& row, double y) const;
    void paintPreedit(QPainter& painter) const;
    void restartBlinking();
    bool showsCaret() const;

    ReportText* model_ = nullptr;
    std::vector<Connection> connections_;
    std::shared_ptr<const text::TextDocument> document_ = std::make_shared<text::TextDocument>();
    std::uint64_t revision_ = 0;
    std::unique_ptr<RowLayout> rows_;
    QFont textFont_; // with the zoom
    double zoom_ = 1;
    bool wraps_ = false;
    text::TextPosition top_;     // the start of the first row that is seen
    text::TextPosition lastTop_; // the first row when the text's end is seen
    text::TextPosition anchor_;  // as the model's
    text::TextPosition caret_;
    std::optional<double> wantedX_; // kept while moving up and down
    bool syncingBars_ = false;
    int wheelRest_ = 0; // eighths of a degree not yet scrolled
    QString preedit_;
    int preeditCaret_ = 0; // units in it
    bool caretIsLit_ = false;
    QBasicTimer blinkTimer_;
    QBasicTimer dragTimer_;
    UnitAt unitAt_ = nullptr;
    text::TextRange heldUnit_;
    QElapsedTimer sinceDoubleClick_;
};

} // namespace genutil
