#include "platform/qt/rich/rich_text_view.h"

#include "platform/qt/rich/rich_text_convert.h"
#include "platform/qt/tie.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace genutil {
namespace {

// Milliseconds after an edit until the caret is told: the model then wants all of the words again.
constexpr int selectionDelay = 150;

constexpr std::array keystrokes{
    std::pair(key::PageUp, Qt::Key_PageUp),
    std::pair(key::PageDown, Qt::Key_PageDown),
    std::pair(key::Home, Qt::Key_Home),
    std::pair(key::End, Qt::Key_End),
};

} // namespace

int RichTextView::ZoomedDevice::metric(PaintDeviceMetric metric) const {
    switch (metric) {
    case PdmDpiX:
    case PdmPhysicalDpiX:
        return std::max(1, int(std::lround(view_.logicalDpiX() * zoom)));
    case PdmDpiY:
    case PdmPhysicalDpiY:
        return std::max(1, int(std::lround(view_.logicalDpiY() * zoom)));
    case PdmWidth:
        return view_.width();
    case PdmHeight:
        return view_.height();
    case PdmDevicePixelRatio:
        return int(std::ceil(view_.devicePixelRatioF()));
    case PdmDevicePixelRatioScaled:
        return int(view_.devicePixelRatioF() * devicePixelRatioFScale());
    default:
        return QPaintDevice::metric(metric);
    }
}

RichTextView::RichTextView(QWidget* parent) : QTextEdit(parent), device_(*this) {
    selectionTimer_.setSingleShot(true);
    selectionTimer_.setInterval(selectionDelay);
    QObject::connect(&selectionTimer_, &QTimer::timeout, this, [this] { reportSelection(); });
    QObject::connect(this, &QTextEdit::selectionChanged, this, [this] { noteSelection(); });
    QObject::connect(this, &QTextEdit::cursorPositionChanged, this, [this] { noteSelection(); });
    replaceDocument(std::make_shared<richtext::RichDocument>());
}

RichTextView::~RichTextView() {
    // The model may still ask for the text: the document outlives the view then, and must not know it any
    // more.
    QObject::disconnect(this, nullptr, this, nullptr);
    document_->disconnect(this);
    QTextEdit::setDocument(nullptr);
}

void RichTextView::setModel(ReportText* model) {
    if (model_ && model_->isRich()) {
        reportSelection();
        model_->richText();
        model_->showRichFrom({});
    }
    connections_.clear();
    model_ = model;
    if (model) {
        connections_.push_back(model->changed.connectScoped([this](Aspect aspect) { follow(aspect); }));
        connections_.push_back(
            model->sentCommand.connectScoped([this](ReportText::Command command) { carryOut(command); }));
        connections_.push_back(model->sentKey.connectScoped([this](int code) {
            for (const auto& [sent, pressed] : keystrokes)
                if (sent == code) {
                    QKeyEvent event(QEvent::KeyPress, pressed, Qt::NoModifier);
                    QApplication::sendEvent(this, &event);
                }
        }));
    }
    follow(Aspect::Locked);
    if (model)
        for (const Aspect aspect : {Aspect::Font, Aspect::Text, Aspect::Value})
            follow(aspect);
}

void RichTextView::follow(Aspect aspect) {
    const QScopedValueRollback following(isFollowing_, true);
    if (aspect == Aspect::Text) {
        // A handler of an edit sets another text: the document is still in the middle of telling the edit.
        if (isReporting_)
            QMetaObject::invokeMethod(
                this, [this] { follow(Aspect::Text); }, Qt::QueuedConnection);
        else
            showText();
    } else if (aspect == Aspect::Value) {
        showSelection();
    } else if (aspect == Aspect::Font) {
        showZoom();
    } else if (aspect == Aspect::Locked) {
        const bool locked = !model_ || model_->locked;
        setTextInteractionFlags(locked ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard
                                       : Qt::TextInteractionFlags(Qt::TextEditorInteraction));
        setTabChangesFocus(locked);
    }
}

void RichTextView::replaceDocument(std::shared_ptr<richtext::RichDocument> document) {
    const QScopedValueRollback following(isFollowing_, true);
    if (document_)
        document_->disconnect(this);
    selectionTimer_.stop();
    document->setDefaultFont(font());
    document->beShownOn(&device_);
    QTextEdit::setDocument(document.get());
    document_ = std::move(document); // the one before goes only now that nothing shows it
    revision_ = document_->revision();
    QObject::connect(document_.get(), &QTextDocument::contentsChange, this,
        [this](int position, int, int) { noteChange(position); });
}

void RichTextView::showText() {
    auto document = std::make_shared<richtext::RichDocument>();
    const auto text = model_ ? model_->richText() : nullptr;
    if (text)
        richtext::fill(*document, *text, indentScale_ = device_.zoom);
    replaceDocument(document);
    if (text)
        model_->showRichFrom({
            .text = [document] { return richtext::read(*document); },
            .words = [document] { return richtext::words(*document); },
        });
}

void RichTextView::showZoom() {
    const double zoom = model_ ? std::clamp<double>(model_->zoom, 0.1, 10) : 1;
    if (std::exchange(device_.zoom, zoom) == zoom)
        return;
    // What is seen first stays there.
    const QTextCursor first = cursorForPosition({0, 0});
    if (!document_->isUndoAvailable() && !document_->isRedoAvailable())
        richtext::scaleIndents(*document_, indentScale_ = zoom);
    document_->setDefaultFont(document_->defaultFont()); // lays out again
    QScrollBar& bar = *verticalScrollBar();
    bar.setValue(bar.value() + cursorRect(first).top());
}

void RichTextView::showSelection() {
    if (!model_ || !model_->isRich())
        return;
    QTextCursor cursor(document_.get());
    cursor.setPosition(richtext::positionOf(*document_, model_->anchor()));
    cursor.setPosition(richtext::positionOf(*document_, model_->caret()), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    ensureCursorVisible();
}

void RichTextView::carryOut(ReportText::Command command) {
    using enum ReportText::Command;
    if (command == Copy)
        copy();
    else if (command == SelectAll)
        selectAll();
    else if (!isEditable() || !isEnabled())
        return;
    else if (command == Undo)
        undo();
    else if (command == Redo)
        redo();
    else if (command == Cut)
        cut();
    else if (command == Paste)
        paste();
    else if (command == Delete)
        textCursor().hasSelection() ? textCursor().removeSelectedText() : textCursor().deleteChar();
}

void RichTextView::noteChange(int position) {
    // Layouts also change for what is no edit, such as text that an input method still composes.
    if (std::exchange(revision_, document_->revision()) == document_->revision() || isFollowing_)
        return;
    QMetaObject::invokeMethod(
        this, [this, document = document_, position] { richtext::keepFiller(*document, position); },
        Qt::QueuedConnection);
    if (!model_ || !model_->isRich())
        return;
    selectionTimer_.start();
    const QScopedValueRollback reporting(isReporting_, true);
    report(*model_, [this] { model_->userEditRich(); });
}

void RichTextView::noteSelection() {
    if (!isFollowing_ && !selectionTimer_.isActive())
        reportSelection();
}

void RichTextView::reportSelection() {
    selectionTimer_.stop();
    if (!model_ || !model_->isRich())
        return;
    const QTextCursor cursor = textCursor();
    const QScopedValueRollback reporting(isReporting_, true);
    report(*model_, [&] {
        model_->userSelect(
            richtext::placeOf(*document_, cursor.anchor()), richtext::placeOf(*document_, cursor.position()));
    });
}

} // namespace genutil
