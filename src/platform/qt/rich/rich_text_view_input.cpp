#include "platform/qt/rich/rich_text_convert.h"
#include "platform/qt/rich/rich_text_formats.h"
#include "platform/qt/rich/rich_text_view.h"
#include "text/rtf.h"

#include <QAbstractTextDocumentLayout>
#include <QContextMenuEvent>
#include <QDragMoveEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextList>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

// What the user does with a rich text: keys, wheel, clipboard, and the marks that only the screen has.
namespace genutil {
namespace {

constexpr std::array rtfTypes{"text/rtf", "application/rtf"};
constexpr int wheelStep = 120; // eighths of a degree in one notch

QByteArray rtfOf(const QMimeData& source) {
    for (const char* type : rtfTypes)
        if (source.hasFormat(type))
            return source.data(type);
    return {};
}

// Text from elsewhere without the control characters that a rich text cannot hold.
QString withoutControls(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    text.removeIf([](QChar each) {
        return (each.unicode() < 0x20 && each != u'\t' && each != u'\n') || each == QChar(0x7F) ||
               each == QChar(0xFDD0) || each == QChar(0xFDD1) || each == QChar::ObjectReplacementCharacter;
    });
    return text;
}

QString forOthers(const std::string& words) {
    return QString::fromStdString(words)
        .replace(QChar::LineSeparator, u'\n')
        .remove(QChar::ObjectReplacementCharacter);
}

bool isFormatKey(const QKeyEvent& event) {
    return event.matches(QKeySequence::Bold) || event.matches(QKeySequence::Italic) ||
           event.matches(QKeySequence::Underline);
}

} // namespace

bool RichTextView::canInsertFromMimeData(const QMimeData* source) const {
    return source->hasFormat(QLatin1String("text/plain")) || !rtfOf(*source).isEmpty();
}

QMimeData* RichTextView::createMimeDataFromSelection() const {
    richtext::RichDocument selected;
    QTextCursor(&selected).insertFragment(textCursor().selection());
    const text::RichText text = richtext::read(selected);
    const std::string rtf = text::writeRtf(text);
    auto mime = std::make_unique<QMimeData>();
    mime->setText(forOthers(text::plainText(text)));
    for (const char* type : rtfTypes)
        mime->setData(QLatin1String(type), QByteArray::fromStdString(rtf));
    return mime.release();
}

void RichTextView::insertFromMimeData(const QMimeData* source) {
    if (!isEditable())
        return;
    QTextCursor cursor = textCursor();
    if (const QByteArray rtf = rtfOf(*source); text::looksLikeRtf({rtf.data(), std::size_t(rtf.size())}))
        richtext::insert(cursor, text::readRtf({rtf.data(), std::size_t(rtf.size())}), indentScale_);
    else if (source->hasFormat(QLatin1String("text/plain")))
        cursor.insertText(withoutControls(source->text()));
    setTextCursor(cursor);
    ensureCursorVisible();
}

// Files are the window's.
void RichTextView::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->ignore();
    else
        QTextEdit::dragEnterEvent(event);
}

void RichTextView::dragMoveEvent(QDragMoveEvent* event) {
    if (event->mimeData()->hasUrls())
        event->ignore();
    else
        QTextEdit::dragMoveEvent(event);
}

void RichTextView::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = createStandardContextMenu(event->pos());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (!actions().isEmpty()) {
        menu->addSeparator();
        menu->addActions(actions());
    }
    menu->popup(event->globalPos());
}

bool RichTextView::event(QEvent* event) {
    // Tells the window's menu that these are keys of the view while it has the focus.
    if (event->type() == QEvent::ShortcutOverride && isEditable() &&
        isFormatKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QTextEdit::event(event);
}

// Tab writes a tab into a text that can be edited; Shift+Tab leaves it all the same.
bool RichTextView::focusNextPrevChild(bool next) {
    return next ? QTextEdit::focusNextPrevChild(true) : QAbstractScrollArea::focusNextPrevChild(false);
}

void RichTextView::focusOutEvent(QFocusEvent* event) {
    if (selectionTimer_.isActive())
        reportSelection();
    QTextEdit::focusOutEvent(event);
}

bool RichTextView::toggleFormat(const QKeyEvent& event) {
    if (!isEditable() || !isFormatKey(event))
        return false;
    const QTextCharFormat now = currentCharFormat();
    QTextCharFormat change;
    if (event.matches(QKeySequence::Bold))
        change.setFontWeight(now.fontWeight() >= QFont::DemiBold ? QFont::Normal : QFont::Bold);
    else if (event.matches(QKeySequence::Italic))
        change.setFontItalic(!now.fontItalic());
    else
        change.setFontUnderline(!now.fontUnderline());
    mergeCurrentCharFormat(change);
    return true;
}

// The second half of a paragraph begins no page, and of a paragraph that only the document had both are the
// user's. An empty entry ends its list instead.
void RichTextView::breakParagraph() {
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    if (cursor.currentList() && cursor.block().length() <= 1) {
        cursor.currentList()->remove(cursor.block());
    } else {
        if (richtext::isFiller(cursor.blockFormat()))
            cursor.setBlockFormat(richtext::toQt(text::ParagraphFormat(), 1));
        cursor.insertBlock(richtext::afterBreak(cursor.block(), indentScale_), cursor.charFormat());
    }
    cursor.endEditBlock();
    setTextCursor(cursor);
    ensureCursorVisible();
}

void RichTextView::keyPressEvent(QKeyEvent* event) {
    const bool isHome = event->key() == Qt::Key_Home, isEnd = event->key() == Qt::Key_End;
    if (toggleFormat(*event)) {
        event->accept();
    } else if (event->key() == Qt::Key_Tab && event->modifiers() == Qt::ControlModifier) {
        QAbstractScrollArea::focusNextPrevChild(true);
    } else if (isEditable() && event->matches(QKeySequence::InsertParagraphSeparator)) {
        breakParagraph();
        event->accept();
    } else if (!isEditable() && (isHome || isEnd)) { // of the text, as in every text that is only read
        QTextCursor cursor = textCursor();
        cursor.movePosition(isHome ? QTextCursor::Start : QTextCursor::End,
            event->modifiers() & Qt::ShiftModifier ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
        setTextCursor(cursor);
    } else {
        QTextEdit::keyPressEvent(event);
    }
}

void RichTextView::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QTextEdit::wheelEvent(event);
        return;
    }
    wheelRest_ += event->angleDelta().y();
    if (const int steps = wheelRest_ / wheelStep; steps != 0) {
        wheelRest_ %= wheelStep;
        zoomRequested(steps);
    }
    event->accept();
}

// A page break is seen as a dashed line.
void RichTextView::paintEvent(QPaintEvent* event) {
    QTextEdit::paintEvent(event);
    QPainter painter(viewport());
    QColor colour = palette().color(QPalette::Text);
    colour.setAlphaF(0.5F);
    painter.setPen(QPen(colour, 1, Qt::DashLine));
    const QPointF shift(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
    const double bottom = viewport()->height();
    for (QTextBlock block = cursorForPosition({0, 0}).block(); block.isValid(); block = block.next()) {
        const QRectF rect = document()->documentLayout()->blockBoundingRect(block).translated(shift);
        if (rect.top() > bottom + 100) // its break stands above it
            break;
        if (block.blockFormat().pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore) {
            const double y = std::floor(rect.top() - 6) + 0.5;
            painter.drawLine(QPointF(0, y), QPointF(viewport()->width(), y));
        }
    }
}

} // namespace genutil
