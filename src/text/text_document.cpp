#include "text/text_document.h"

#include "text/ascii.h"
#include "text/character_width.h"
#include "text/edit_history.h"
#include "text/piece_table.h"
#include "text/text_loading.h"
#include "text/transcode.h"
#include "text/utf8.h"

#include <algorithm>
#include <deque>
#include <stdexcept>
#include <utility>

namespace genutil::text {

namespace {

// Handed to a sink at once.
constexpr std::size_t writtenBlock = std::size_t{1024} * 1024;

// The text with every line end, of whatever kind, as `lineEnd`.
std::string withLineEnds(std::string_view text, std::string_view lineEnd) {
    std::string out;
    out.reserve(text.size());
    for (;;) {
        const auto found = std::ranges::find_if(text, [](char c) { return c == '\n' || c == '\r'; });
        const auto end = static_cast<std::size_t>(found - text.begin());
        out += text.substr(0, end);
        if (end == text.size())
            return out;
        out += lineEnd;
        text.remove_prefix(end + (text.substr(end).starts_with("\r\n") ? 2 : 1));
    }
}

} // namespace

struct TextDocument::State {
    LoadedText loaded;
    PieceTable table;
    EditHistory history;
    Done done;
    WidestLine widest;
    Encoding encoding;

    // Lines that span pieces, as they were asked for; the oldest goes first.
    struct KeptLine {
        std::size_t index;
        std::string text;
    };
    mutable std::deque<KeptLine> kept;

    explicit State(LoadedText text);

    std::string_view line(std::size_t index) const;
    TextPosition positionAt(std::uint64_t offset) const;
    std::uint64_t offsetOf(TextPosition position) const;
    std::uint64_t characterStart(std::uint64_t offset) const;
    std::string prepared(std::string_view text, std::uint64_t begin, std::uint64_t end) const;
    TextChange exchange(Edit& edit);
    TextChange edit(std::uint64_t offset, std::uint64_t removed, std::string_view inserted, Joining joining);
    std::optional<TextChange> takeStep(Edit* edit, Done::Kind kind);
    void noteWidths(const TextChange& change);
    template<typename Take>
    void eachBlock(Take take) const;
    void requireEncodable(const CodePages& pages) const;
    bool isAsRead() const { return history.isAtStart() && encoding == loaded.encoding; }
};

TextDocument::State::State(LoadedText text)
    : loaded(std::move(text)), widest(loaded.widest), encoding(loaded.encoding) {
    table.setOriginal(loaded.text(), loaded.begin, std::move(loaded.starts));
}

TextDocument::TextDocument() : state_(std::make_unique<State>(LoadedText{})) {}
TextDocument::TextDocument(std::unique_ptr<State> state) : state_(std::move(state)) {}
TextDocument::~TextDocument() = default;
TextDocument::TextDocument(TextDocument&&) noexcept = default;
TextDocument& TextDocument::operator=(TextDocument&&) noexcept = default;

TextDocument TextDocument::load(
    ByteSource& source, const CodePages& pages, const std::optional<std::string>& wantedEncoding) {
    TextLoading loading(source.expectedSize(), pages, wantedEncoding);
    loading.readAll(source);
    return TextDocument(std::make_unique<State>(loading.finish()));
}

TextDocument TextDocument::fromBytes(
    std::string bytes, const CodePages& pages, const std::optional<std::string>& wantedEncoding) {
    TextLoading loading(bytes.size(), pages, wantedEncoding);
    loading.append(bytes);
    return TextDocument(std::make_unique<State>(loading.finish()));
}

TextDocument TextDocument::reinterpreted(const std::string& encodingName, const CodePages& pages) const {
    const std::optional<std::string> wanted = encodingName;
    TextLoading loading(size(), pages, wanted);
    write([&](std::string_view bytes) { loading.append(bytes); }, pages);
    return TextDocument(std::make_unique<State>(loading.finish()));
}

// -- Lines and places
// ------------------------------------------------------------------------------------------------

std::string_view TextDocument::State::line(std::size_t index) const {
    if (index >= table.lineCount())
        throw std::out_of_range("line " + std::to_string(index) + " of a text with " +
                                std::to_string(table.lineCount()) + " lines (lines are counted from 0)");
    const std::uint64_t begin = table.lineStart(index);
    const std::uint64_t end = table.lineEnd(index);
    const std::string_view whole = table.stretch(begin, end);
    if (whole.size() == end - begin)
        return whole;

    for (const KeptLine& line : kept)
        if (line.index == index)
            return line.text;
    if (kept.size() == keptLines)
        kept.pop_front();
    return kept.emplace_back(KeptLine{index, table.copy(begin, end)}).text;
}

TextDocument::Stretch TextDocument::stretchAt(std::size_t line) const {
    const PieceTable& table = state_->table;
    const std::string_view alone = this->line(line);
    const auto [first, last] = table.wholeLinesAround(line);
    if (first == last)
        return {table.lineStart(line), line, 1, alone};
    const std::uint64_t begin = table.lineStart(first);
    const std::uint64_t end = last == lineCount() ? table.size() : table.lineStart(last);
    return {begin, first, last - first, table.stretch(begin, end)};
}

TextPosition TextDocument::State::positionAt(std::uint64_t offset) const {
    offset = std::min(offset, table.size());
    const std::size_t line = table.lineAt(offset);
    return {line, std::min(offset, table.lineEnd(line)) - table.lineStart(line)};
}

std::uint64_t TextDocument::State::offsetOf(TextPosition position) const {
    if (position.line >= table.lineCount())
        return table.size();
    const std::uint64_t begin = table.lineStart(position.line);
    return begin + std::min<std::uint64_t>(position.byte, table.lineEnd(position.line) - begin);
}

// The offset, or the start of the character that it is inside of.
std::uint64_t TextDocument::State::characterStart(std::uint64_t offset) const {
    constexpr std::uint64_t longest = 4;
    const std::uint64_t begin = offset - std::min(offset, longest - 1);
    const std::string around = table.copy(begin, std::min(offset + longest - 1, table.size()));
    for (std::uint64_t start = offset; start-- > begin;)
        if (!isContinuation(around[start - begin]))
            return start + decodeUtf8(around, start - begin).length > offset ? start : offset;
    return offset;
}

std::size_t TextDocument::lineCount() const {
    return state_->table.lineCount();
}
std::string_view TextDocument::line(std::size_t index) const {
    return state_->line(index);
}
WidestLine TextDocument::widestLine() const {
    return state_->widest;
}
TextPosition TextDocument::end() const {
    return state_->positionAt(state_->table.size());
}
std::uint64_t TextDocument::size() const {
    return state_->table.size();
}
std::uint64_t TextDocument::offsetOf(TextPosition position) const {
    return state_->offsetOf(position);
}
TextPosition TextDocument::positionAt(std::uint64_t offset) const {
    return state_->positionAt(offset);
}
std::string_view TextDocument::lineEnd() const {
    return state_->loaded.lineEnd;
}

std::string TextDocument::text(const TextRange& range) const {
    return state_->table.copy(offsetOf(range.from), offsetOf(range.to));
}

std::string TextDocument::text(const TextRange& range, std::string_view lineEnd) const {
    return withLineEnds(text(range), lineEnd);
}

// -- Edits
// -----------------------------------------------------------------------------------------------------------

// The text to be put in the place of the bytes, with line ends that stay what they are between their
// neighbours: a lone CR and a lone LF that come together would be one line end.
std::string TextDocument::State::prepared(
    std::string_view text, std::uint64_t begin, std::uint64_t end) const {
    std::string prepared = withLineEnds(text, loaded.lineEnd);
    if (prepared.starts_with('\n') && begin > 0 && table.byteAt(begin - 1) == '\r')
        prepared.insert(0, 1, '\r');
    if (prepared.ends_with('\r') && end < table.size() && table.byteAt(end) == '\n')
        prepared.push_back('\n');
    return prepared;
}

// Takes the step: afterwards the edit is the way back. The widest line is the caller's business.
TextChange TextDocument::State::exchange(Edit& edit) {
    TextChange change{positionAt(edit.offset), positionAt(edit.offset + edit.length), {}};
    const std::uint64_t newLength = PieceTable::lengthOf(edit.other);
    edit.other = table.splice(edit.offset, edit.length, edit.other);
    edit.length = newLength;
    kept.clear();
    // A CR and an LF that have come together, or have been parted, move the place to the line before.
    change.from = std::min(change.from, positionAt(edit.offset));
    change.newEnd = positionAt(edit.offset + edit.length);
    return change;
}

void TextDocument::State::noteWidths(const TextChange& change) {
    if (widest.index > change.oldEnd.line)
        widest.index = widest.index - change.oldEnd.line + change.newEnd.line;
    else
        widest.index = std::min(widest.index, change.newEnd.line);
    for (std::size_t i = change.from.line; i <= change.newEnd.line; ++i) {
        const std::string_view text = line(i);
        if (!mayTakeMoreColumns(text, widest.columns))
            continue;
        if (const std::size_t columns = columnsOf(text); columns > widest.columns)
            widest = {i, columns};
    }
}

TextChange TextDocument::State::edit(
    std::uint64_t offset, std::uint64_t removed, std::string_view inserted, Joining joining) {
    Edit made{offset, removed, {}, widest};
    if (!inserted.empty())
        made.other.push_back(table.add(inserted));
    const TextChange change = exchange(made);
    noteWidths(change);

    if (inserted.find_first_of("\r\n") != std::string_view::npos)
        history.endStep();
    const bool joined = history.note(std::move(made), joining == Joining::WithPrevious);
    done = {Done::Kind::Edit, joined, offset, removed, inserted.size()};
    return change;
}

TextChange TextDocument::replace(const TextRange& range, std::string_view text, Joining joining) {
    const std::uint64_t begin = state_->characterStart(offsetOf(range.from));
    const std::uint64_t end = std::max(begin, state_->characterStart(offsetOf(range.to)));
    const std::string prepared = state_->prepared(text, begin, end);
    if (begin == end && prepared.empty()) {
        const TextPosition place = state_->positionAt(begin);
        return {place, place, place};
    }
    return state_->edit(begin, end - begin, prepared, joining);
}

void TextDocument::splice(
    std::uint64_t offset, std::uint64_t removed, std::string_view inserted, Joining joining) {
    if (offset > size() || removed > size() - offset)
        throw std::out_of_range("bytes " + std::to_string(offset) + " to " +
                                std::to_string(offset + removed) + " of a text with " +
                                std::to_string(size()));
    std::string bytes(inserted);
    // A line end of two bytes that the place parts is taken out and put in again as two of one byte.
    const auto parts = [this](std::uint64_t at) {
        const PieceTable& table = state_->table;
        return at > 0 && at < table.size() && table.byteAt(at - 1) == '\r' && table.byteAt(at) == '\n';
    };
    if (parts(offset)) {
        --offset;
        ++removed;
        bytes.insert(0, 1, '\r');
    }
    if (parts(offset + removed)) {
        ++removed;
        bytes += '\n';
    }
    state_->edit(offset, removed, bytes, joining);
}

std::optional<TextChange> TextDocument::State::takeStep(Edit* edit, Done::Kind kind) {
    if (edit == nullptr)
        return std::nullopt;
    std::swap(edit->otherWidest, widest);
    const std::uint64_t removed = edit->length;
    const TextChange change = exchange(*edit);
    done = {kind, false, edit->offset, removed, edit->length};
    return change;
}

std::optional<TextChange> TextDocument::undo() {
    return state_->takeStep(state_->history.undo(), Done::Kind::Undo);
}

std::optional<TextChange> TextDocument::redo() {
    return state_->takeStep(state_->history.redo(), Done::Kind::Redo);
}

const TextDocument::Done& TextDocument::lastDone() const {
    return state_->done;
}

std::string TextDocument::bytes(std::uint64_t offset, std::uint64_t length) const {
    return state_->table.copy(offset, offset + length);
}

bool TextDocument::canUndo() const {
    return state_->history.canUndo();
}
bool TextDocument::canRedo() const {
    return state_->history.canRedo();
}
std::size_t TextDocument::undoDepth() const {
    return state_->history.depth();
}
void TextDocument::endUndoStep() {
    state_->history.endStep();
}
bool TextDocument::isEdited() const {
    return !state_->history.isSaved();
}
void TextDocument::markSaved() {
    state_->history.markSaved();
}

// -- Bytes
// -----------------------------------------------------------------------------------------------------------

const Encoding& TextDocument::encoding() const {
    return state_->encoding;
}
void TextDocument::setEncoding(Encoding encoding) {
    state_->encoding = std::move(encoding);
}
bool TextDocument::isExact() const {
    return state_->loaded.exact;
}

// Calls take(offset, block) for all of the text; no block ends inside a character.
template<typename Take>
void TextDocument::State::eachBlock(Take take) const {
    const std::uint64_t size = table.size();
    for (std::uint64_t offset = 0; offset < size;) {
        std::string_view block = table.stretch(offset, std::min(size, offset + writtenBlock));
        if (const std::uint64_t end = characterStart(offset + block.size()); end > offset)
            block = block.substr(0, end - offset);
        take(offset, block);
        offset += block.size();
    }
}

void TextDocument::State::requireEncodable(const CodePages& pages) const {
    eachBlock([&](std::uint64_t offset, std::string_view block) {
        const auto encoded = encodeText(encoding.name, block, pages);
        if (!encoded.refusedAt)
            return;
        const TextPosition position = positionAt(offset + *encoded.refusedAt);
        const std::string_view text = line(position.line);
        std::size_t column = 0;
        for (std::size_t at = 0; at < position.byte; at += decodeUtf8(text, at).length)
            ++column;
        throw UnencodableCharacter(
            position, column, decodeUtf8(text, position.byte).codePoint, encoding.name);
    });
}

void TextDocument::write(const ByteSink& sink, const CodePages& pages) const {
    const State& state = *state_;
    if (state.isAsRead() && !state.loaded.exact)
        return sink(state.loaded.bytes.view());

    const bool utf8 = equalsIgnoringCase(state.encoding.name, encodings::utf8);
    if (!utf8)
        state.requireEncodable(pages);
    if (state.encoding.mark)
        sink(byteOrderMark(state.encoding.name));
    state.eachBlock([&](std::uint64_t, std::string_view block) {
        if (utf8)
            sink(block);
        else
            sink(encodeText(state.encoding.name, block, pages).bytes);
    });
    if (!state.loaded.tail.empty() && state.encoding == state.loaded.encoding)
        sink(state.loaded.tail);
}

} // namespace genutil::text
