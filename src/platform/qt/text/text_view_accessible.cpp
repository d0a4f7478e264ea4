#include "platform/qt/text/text_view_accessible.h"

#include "platform/qt/text/character_steps.h"
#include "platform/qt/text/text_view.h"
#include "platform/qt/text/utf16_text.h"

#include <QAccessibleWidget>

#include <algorithm>

namespace genutil {

using text::TextPosition;
using text::TextRange;

namespace {

// A text is told as a whole up to this size, in bytes. Of a larger one it is a window of this size, cut at
// the lines around what is seen, and the offsets count from the window's start; it moves with the view once
// the caret or the first row seen has left its middle half. So nothing here takes longer in a larger text.
constexpr std::uint64_t windowSize = 512u << 10;

class TextViewAccessible : public QAccessibleWidget,
                           public QAccessibleTextInterface,
                           public QAccessibleEditableTextInterface {
public:
    explicit TextViewAccessible(TextView* view)
        : QAccessibleWidget(view, QAccessible::EditableText), view_(view) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.multiLine = true;
        state.selectableText = true;
        state.editable = view_->isEditable();
        state.readOnly = !view_->isEditable();
        return state;
    }
    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value)
            return view_->visibleText();
        // A view that is part of another takes its name over.
        const QWidget* whole = view_->parentWidget();
        const bool named = !view_->accessibleName().isEmpty();
        if (kind == QAccessible::Name && !named && whole)
            return whole->accessibleName();
        return QAccessibleWidget::text(kind);
    }

    int characterCount() const override { return told().size(); }
    QString text(int start, int end) const override { return told().text().mid(start, end - start); }
    QString attributes(int, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return QStringLiteral("font-family:\"%1\";").arg(view_->font().family());
    }
    int cursorPosition() const override { return unitOf(caret()); }
    void setCursorPosition(int position) override { select(position, position); }
    int selectionCount() const override { return anchor() == caret() ? 0 : 1; }
    void selection(int, int* start, int* end) const override {
        *start = unitOf(std::min(anchor(), caret()));
        *end = unitOf(std::max(anchor(), caret()));
    }
    void addSelection(int start, int end) override { select(start, end); }
    void setSelection(int, int start, int end) override { select(start, end); }
    void removeSelection(int) override { view_->select(caret(), caret()); }
    void scrollToSubstring(int start, int end) override {
        view_->showPosition(positionOf(end));
        view_->showPosition(positionOf(start));
    }
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;

    void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
    void deleteText(int start, int end) override { replaceText(start, end, QString()); }
    void replaceText(int start, int end, const QString& text) override {
        view_->edit({positionOf(start), positionOf(end)}, text.toStdString());
    }

    void tellRenewed();
    void tellChange(const text::TextChange& change);
    void tellCaret();

private:
    TextPosition anchor() const { return view_->model() ? view_->model()->anchor() : TextPosition(); }
    TextPosition caret() const { return view_->model() ? view_->model()->caret() : TextPosition(); }
    void select(int anchor, int caret) {
        const TextPosition to = positionOf(caret);
        view_->select(positionOf(anchor), to);
        view_->showPosition(to);
    }
    const Utf16Text& told() const;
    bool isWhole() const { return view_->document().size() <= windowSize; }
    bool windowHolds(TextPosition centre) const;
    // Places outside of the window count as its nearest end.
    int unitOf(TextPosition position) const {
        told();
        return unitInWindow(std::clamp(position, range_.from, range_.to));
    }
    int unitInWindow(TextPosition position) const;
    TextPosition positionOf(int unit) const;

    TextView* view_;
    mutable std::optional<std::uint64_t> revision_; // of the text that the window is of
    mutable TextRange range_;
    mutable std::string bytes_; // of the range, each line end one LF
    mutable Utf16Text window_;
};

bool TextViewAccessible::windowHolds(TextPosition centre) const {
    const text::TextDocument& document = view_->document();
    const std::uint64_t at = document.offsetOf(centre);
    const std::uint64_t from = document.offsetOf(range_.from);
    const std::uint64_t to = document.offsetOf(range_.to);
    return (from == 0 || at >= from + windowSize / 4) && (to == document.size() || at + windowSize / 4 <= to);
}

const Utf16Text& TextViewAccessible::told() const {
    const text::TextDocument& document = view_->document();
    const bool caretSeen = view_->isEditable() && view_->placeOf(caret());
    const TextPosition centre = caretSeen ? caret() : view_->firstVisible();
    if (revision_ == view_->revision() && (isWhole() || windowHolds(centre)))
        return window_;
    range_ = {{}, document.end()};
    if (!isWhole()) {
        const std::uint64_t at = document.offsetOf(centre);
        range_.from = document.positionAt(at - std::min(at, windowSize / 2));
        range_.to = document.positionAt(at + windowSize / 2);
        // Whole lines, unless a line is longer than that.
        if (range_.from.line < centre.line)
            range_.from.byte = 0;
        if (range_.to.line > centre.line)
            range_.to.byte = 0;
    }
    bytes_ = document.text(range_, "\n");
    window_ = Utf16Text(bytes_);
    revision_ = view_->revision();
    return window_;
}

int TextViewAccessible::unitInWindow(TextPosition position) const {
    std::size_t start = 0;
    for (std::size_t line = range_.from.line; line < position.line; ++line)
        start = bytes_.find('\n', start) + 1;
    return window_.unitOf(start + position.byte - (position.line == range_.from.line ? range_.from.byte : 0));
}

TextPosition TextViewAccessible::positionOf(int unit) const {
    const std::size_t byte = told().byteOf(unit);
    const std::string_view before = std::string_view(bytes_).substr(0, byte);
    const auto lines = std::size_t(std::ranges::count(before, '\n'));
    if (lines == 0)
        return {range_.from.line, range_.from.byte + byte};
    return {range_.from.line + lines, byte - before.rfind('\n') - 1};
}

QRect TextViewAccessible::characterRect(int offset) const {
    const auto place = view_->placeOf(positionOf(offset));
    if (!place)
        return {};
    const auto next = view_->placeOf(positionOf(offset + 1));
    QRectF covered = *place;
    if (next && next->top() == covered.top() && next->left() > covered.left())
        covered.setRight(next->left());
    const QRect rect = covered.toAlignedRect();
    return {view_->viewport()->mapToGlobal(rect.topLeft()), rect.size()};
}

int TextViewAccessible::offsetAtPoint(const QPoint& point) const {
    const QPoint inside = view_->viewport()->mapFromGlobal(point);
    TextPosition position = view_->positionAt(inside);
    // The nearest place may be that behind the character.
    const auto place = view_->placeOf(position);
    if (place && place->left() > inside.x() && position.byte > 0)
        position = previousCharacter(view_->document(), position);
    return unitOf(position);
}

void TextViewAccessible::tellRenewed() {
    QAccessibleTextInsertEvent event(view_, 0, told().text());
    QAccessible::updateAccessibility(&event);
}

// What has gone is known only from the window as it was. A window that does not begin with the text may move
// with the edit: then nothing is told but the caret.
void TextViewAccessible::tellChange(const text::TextChange& change) {
    const bool tells =
        revision_ == view_->revision() - 1 && range_.from == TextPosition() && change.oldEnd <= range_.to;
    int from = 0;
    QString removed;
    if (tells) {
        from = unitInWindow(change.from);
        removed = window_.text().mid(from, unitInWindow(change.oldEnd) - from);
    }
    if (!tells || from != unitOf(change.from))
        return;
    const QString inserted = window_.text().mid(from, unitOf(change.newEnd) - from);
    QAccessibleTextUpdateEvent event(view_, from, removed, inserted);
    QAccessible::updateAccessibility(&event);
}

void TextViewAccessible::tellCaret() {
    int from = 0;
    int to = 0;
    selection(0, &from, &to);
    QAccessibleTextSelectionEvent event(view_, from, to);
    event.setCursorPosition(cursorPosition());
    QAccessible::updateAccessibility(&event);
    QAccessibleTextCursorEvent moved(view_, cursorPosition());
    QAccessible::updateAccessibility(&moved);
}

QAccessibleInterface* create(const QString& className, QObject* object) {
    // Only what derives from the toolkit's class of which our view is one is looked at closer: other
    // libraries' objects may have been compiled without the type information that the look takes.
    if (className != QLatin1String("QAbstractScrollArea"))
        return nullptr;
    auto* view = dynamic_cast<TextView*>(object);
    return view ? new TextViewAccessible(view) : nullptr;
}

TextViewAccessible* accessibleOf(TextView& view) {
    return QAccessible::isActive()
               ? dynamic_cast<TextViewAccessible*>(QAccessible::queryAccessibleInterface(&view))
               : nullptr;
}

} // namespace

void installTextViewAccessibility() {
    static const bool installed = (QAccessible::installFactory(create), true);
    static_cast<void>(installed);
}

void accessibleTextRenewed(TextView& view) {
    if (TextViewAccessible* face = accessibleOf(view))
        face->tellRenewed();
}

void accessibleTextChanged(TextView& view, const text::TextChange& change) {
    if (TextViewAccessible* face = accessibleOf(view))
        face->tellChange(change);
}

void accessibleCaretMoved(TextView& view) {
    if (TextViewAccessible* face = accessibleOf(view))
        face->tellCaret();
}

} // namespace genutil
