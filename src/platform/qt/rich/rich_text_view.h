#pragma once

#include "hostif/event.h"
#include "hostif/report_text.h"

#include <QPaintDevice>
#include <QTextEdit>
#include <QTimer>

#include <memory>
#include <vector>

namespace genutil {

namespace richtext {
class RichDocument;
}

// Shows a rich text and lets the user edit it. It edits a copy of its own, which the model asks for when the
// text is wanted.
class RichTextView : public QTextEdit {
public:
    explicit RichTextView(QWidget* parent = nullptr);
    ~RichTextView() override;

    // Shows the model's text while it is rich, and nothing while it is plain. Null lets go: the model then
    // has the text as edited, and the view is empty.
    void setModel(ReportText* model);

    Event<int> zoomRequested; // steps of the wheel held with Ctrl, positive to enlarge

protected:
    bool canInsertFromMimeData(const QMimeData* source) const override;
    QMimeData* createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData* source) override;

    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    // Measures as the view does, with more or fewer dots to an inch: so a zoom changes the layout and nothing
    // in the text.
    class ZoomedDevice : public QPaintDevice {
    public:
        explicit ZoomedDevice(const QWidget& view) : view_(view) {}
        QPaintEngine* paintEngine() const override { return nullptr; }
        double zoom = 1;

    protected:
        int metric(PaintDeviceMetric metric) const override;

    private:
        const QWidget& view_;
    };

    void follow(Aspect aspect);
    void showText();
    void showZoom();
    void showSelection();
    void replaceDocument(std::shared_ptr<richtext::RichDocument> document);
    void carryOut(ReportText::Command command);

    void noteChange(int position);
    void noteSelection();
    void reportSelection();

    bool isEditable() const { return textInteractionFlags().testFlag(Qt::TextEditable); }
    bool toggleFormat(const QKeyEvent& event);
    void breakParagraph();

    ReportText* model_ = nullptr;
    std::vector<Connection> connections_;
    std::shared_ptr<richtext::RichDocument> document_;
    ZoomedDevice device_;
    double indentScale_ = 1;   // the zoom, or an earlier one while there is something to undo
    int revision_ = 0;         // of the document, as last told to the model
    bool isFollowing_ = false; // the model's changes, not the user's
    bool isReporting_ = false;
    QTimer selectionTimer_;
    int wheelRest_ = 0; // eighths of a degree not yet used
};

} // namespace genutil
