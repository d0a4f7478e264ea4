// Input methods: characters that are composed from several keys.
#include "platform/qt/text/text_view.h"
#include "platform/qt/text/utf16_text.h"
#include "text/utf8.h"

#include <QInputMethodEvent>

#include <algorithm>

namespace genutil {

using text::TextPosition;

namespace {

constexpr std::size_t reach = 1000;         // bytes on either side of the caret that an input method sees
constexpr std::uint64_t largestTold = 4096; // bytes of a selection

// What an input method sees: the caret's line, near the caret.
struct NearText {
    std::size_t begin; // byte in the line
    Utf16Text text;

    NearText(const text::TextDocument& document, TextPosition caret)
        : begin(characterBefore(document.line(caret.line), caret.byte - std::min(caret.byte, reach))),
          text(ofLine(document.line(caret.line), begin, caret.byte + reach)) {}

    static std::size_t characterBefore(std::string_view line, std::size_t byte) {
        for (int i = 0; i < 3 && byte > 0 && byte < line.size() && (line[byte] & 0xC0) == 0x80; ++i)
            --byte;
        return byte;
    }
    static std::string_view ofLine(std::string_view line, std::size_t from, std::size_t to) {
        return line.substr(from, characterBefore(line, std::min(to, line.size())) - from);
    }
    // A place in another line, or far away, counts as the nearest one that is seen.
    int unitOf(TextPosition caret, TextPosition position) const {
        if (position.line != caret.line)
            return position < caret ? 0 : text.size();
        return text.unitOf(std::max(position.byte, begin) - begin);
    }
};

} // namespace

QVariant TextView::inputMethodQuery(Qt::InputMethodQuery query) const {
    switch (query) {
    case Qt::ImEnabled:
        return isEditable();
    case Qt::ImHints:
        return int(Qt::ImhMultiLine);
    case Qt::ImFont:
        return textFont_;
    case Qt::ImCursorRectangle:
    case Qt::ImAnchorRectangle: {
        const auto place = placeOf(query == Qt::ImCursorRectangle ? caret_ : anchor_);
        return place ? place->translated(viewport()->pos()) : QRectF();
    }
    case Qt::ImSurroundingText:
        return NearText(*document_, caret_).text.text();
    case Qt::ImCursorPosition:
        return NearText(*document_, caret_).unitOf(caret_, caret_);
    case Qt::ImAnchorPosition:
        return NearText(*document_, caret_).unitOf(caret_, anchor_);
    case Qt::ImCurrentSelection: {
        const text::TextRange selected{std::min(anchor_, caret_), std::max(anchor_, caret_)};
        const bool small =
            document_->offsetOf(selected.to) - document_->offsetOf(selected.from) <= largestTold;
        return small ? QString::fromStdString(document_->text(selected, "\n")) : QString();
    }
    default:
        return QAbstractScrollArea::inputMethodQuery(query);
    }
}

void TextView::inputMethodEvent(QInputMethodEvent* event) {
    if (!isEditable()) {
        event->ignore();
        return;
    }
    text::TextRange replaced = model_->selection();
    if (event->replacementLength() > 0) {
        const NearText seen(*document_, caret_);
        const int first = seen.unitOf(caret_, caret_) + event->replacementStart();
        replaced = {{caret_.line, seen.begin + seen.text.byteOf(first)},
            {caret_.line, seen.begin + seen.text.byteOf(first + event->replacementLength())}};
    }
    // What is being composed takes the place of the selection.
    const bool composes = preedit_.isEmpty() && !event->preeditString().isEmpty();
    if (!event->commitString().isEmpty() || event->replacementLength() > 0)
        edit(replaced, event->commitString().toStdString(), text::TextDocument::Joining::WithPrevious);
    else if (composes && !replaced.isEmpty())
        edit(replaced, "");
    preedit_ = event->preeditString();
    preeditCaret_ = int(preedit_.size());
    for (const QInputMethodEvent::Attribute& each : event->attributes())
        if (each.type == QInputMethodEvent::Cursor)
            preeditCaret_ = std::clamp(each.start, 0, int(preedit_.size()));
    event->accept();
    viewport()->update();
    updateMicroFocus();
}

} // namespace genutil
