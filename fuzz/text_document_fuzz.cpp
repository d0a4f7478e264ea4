// Any bytes are a report, in any encoding, and any edits may follow. What the document says of its text is
// held against a plain string that goes through the same edits, and what it writes against what was read.

#include "require.h"
#include "text/character_width.h"
#include "text/letters.h"
#include "text/search.h"
#include "text/text_document.h"
#include "text/utf8.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdint>
#include <vector>

using namespace genutil::text;

namespace {

struct Line {
    std::size_t begin;
    std::size_t end;
};

std::vector<Line> linesOf(const std::string& text) {
    std::vector<Line> lines;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        if (text[i] != '\n' && text[i] != '\r')
            continue;
        lines.push_back({begin, text[i] == '\n' && i > begin && text[i - 1] == '\r' ? i - 1 : i});
        begin = i + 1;
    }
    lines.push_back({begin, text.size()});
    return lines;
}

std::string written(const TextDocument& document) {
    std::string bytes;
    document.write([&](std::string_view block) { bytes += block; });
    return bytes;
}

std::string whole(const TextDocument& document) {
    return document.text({{}, document.end()});
}

enum class Check { Lines, Everything };

void checkText(const TextDocument& document, const std::string& text, Check check) {
    const std::vector<Line> lines = linesOf(text);
    REQUIRE(whole(document) == text);
    REQUIRE(document.size() == text.size());
    REQUIRE(document.lineCount() == lines.size());
    WidestLine widest;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string line = text.substr(lines[i].begin, lines[i].end - lines[i].begin);
        REQUIRE(document.line(i) == line);
        if (columnsOf(line) > widest.columns)
            widest = {i, columnsOf(line)};
        for (std::size_t byte = 0; check == Check::Everything && byte <= line.size(); ++byte) {
            REQUIRE(document.offsetOf({i, byte}) == lines[i].begin + byte);
            REQUIRE((document.positionAt(lines[i].begin + byte) == TextPosition{i, byte}));
        }
        const auto stretch = document.stretchAt(i);
        REQUIRE(stretch.firstLine <= i && i < stretch.firstLine + stretch.lines);
        REQUIRE(stretch.offset == lines[stretch.firstLine].begin);
        REQUIRE(text.substr(stretch.offset, stretch.text.size()) == stretch.text);
        REQUIRE(stretch.offset + stretch.text.size() >= lines[stretch.firstLine + stretch.lines - 1].end);
    }
    REQUIRE(document.widestLine().columns >= widest.columns);
    REQUIRE(document.widestLine().index < lines.size());
    if (!document.canUndo())
        REQUIRE(
            document.widestLine().index == widest.index && document.widestLine().columns == widest.columns);
}

// The lines before and behind a change are the old ones.
void checkChange(const TextChange& change, const std::string& before, const std::string& after) {
    const std::vector<Line> oldLines = linesOf(before);
    const std::vector<Line> newLines = linesOf(after);
    REQUIRE(change.from <= change.oldEnd && change.from <= change.newEnd);
    REQUIRE(change.oldEnd.line < oldLines.size() && change.newEnd.line < newLines.size());
    REQUIRE(oldLines.size() - change.oldEnd.line == newLines.size() - change.newEnd.line);
    const auto line = [](const std::string& text, Line place) {
        return text.substr(place.begin, place.end - place.begin);
    };
    for (std::size_t i = 0; i < change.from.line; ++i)
        REQUIRE(line(before, oldLines[i]) == line(after, newLines[i]));
    for (std::size_t i = change.oldEnd.line + 1, j = change.newEnd.line + 1; i < oldLines.size(); ++i, ++j)
        REQUIRE(line(before, oldLines[i]) == line(after, newLines[j]));
    REQUIRE(line(before, oldLines[change.from.line]).substr(0, change.from.byte) ==
            line(after, newLines[change.from.line]).substr(0, change.from.byte));
    REQUIRE(line(before, oldLines[change.oldEnd.line]).substr(change.oldEnd.byte) ==
            line(after, newLines[change.newEnd.line]).substr(change.newEnd.byte));
}

bool matches(const std::string& text, std::size_t at, const SearchQuery& query) {
    std::size_t i = 0;
    while (i < query.text.size()) {
        const auto wanted = decodeUtf8(query.text, i);
        const auto found = decodeUtf8(text, at + i);
        const bool same = text.compare(at + i, wanted.length, query.text, i, wanted.length) == 0;
        const bool folded = wanted.valid && found.valid && wanted.length == found.length &&
                            foldCase(wanted.codePoint) == foldCase(found.codePoint);
        if (!same && (query.matchCase || !folded))
            return false;
        i += wanted.length;
    }
    const std::size_t end = at + i;
    const auto isWord = [&](std::size_t place) { return isWordCharacter(decodeUtf8(text, place).codePoint); };
    std::size_t before = at;
    while (before > 0 && at - before < 4 && (before == at || isContinuation(text[before])))
        --before;
    return !query.wholeWord || ((end >= text.size() || !isWord(end)) && (at == 0 || !isWord(before)));
}

void checkSearch(const TextDocument& document, const std::string& text, FuzzedDataProvider& data) {
    SearchQuery query{data.ConsumeRandomLengthString(4), data.ConsumeBool(), data.ConsumeBool()};
    if (query.text.empty() && !text.empty())
        query.text = text.substr(data.ConsumeIntegralInRange<std::size_t>(0, text.size() - 1), 3);
    if (!isValidUtf8(query.text))
        return;
    const auto start = document.positionAt(data.ConsumeIntegralInRange<std::size_t>(0, text.size()));
    const std::size_t from = document.offsetOf(start);
    const bool findable = !query.text.empty() && query.text.find_first_of("\r\n") == std::string::npos;
    std::optional<std::size_t> ahead;
    std::optional<std::size_t> behind;
    for (std::size_t at = 0; findable && at + query.text.size() <= text.size(); ++at) {
        if (!matches(text, at, query))
            continue;
        if (at >= from && !ahead)
            ahead = at;
        if (at + query.text.size() <= from)
            behind = at;
    }
    const auto check = [&](SearchDirection direction, std::optional<std::size_t> expected) {
        const auto found = find(document, query, start, direction);
        REQUIRE(found.has_value() == expected.has_value());
        if (found)
            REQUIRE(document.offsetOf(found->from) == *expected &&
                    document.offsetOf(found->to) == *expected + query.text.size());
    };
    check(SearchDirection::Forward, ahead);
    check(SearchDirection::Backward, behind);
}

// The texts that edits led to. A step of undoing may take back several edits.
class History {
public:
    explicit History(std::string text) : texts_{std::move(text)}, saved_(texts_[0]) {}

    const std::string& text() const { return texts_[now_]; }
    void edit(std::string text) {
        texts_.resize(now_ + 1);
        texts_.push_back(std::move(text));
        ++now_;
        undone_.clear();
    }
    void undo(const std::string& text) {
        undone_.push_back(now_);
        do
            REQUIRE(now_-- > 0);
        while (texts_[now_] != text);
    }
    void redo(const std::string& text) {
        REQUIRE(!undone_.empty());
        now_ = undone_.back();
        undone_.pop_back();
        REQUIRE(texts_[now_] == text);
    }
    bool canRedo() const { return !undone_.empty(); }
    void save() { saved_ = text(); }
    const std::string& saved() const { return saved_; }

private:
    std::vector<std::string> texts_;
    std::vector<std::size_t> undone_;
    std::size_t now_ = 0;
    std::string saved_;
};

std::size_t characterStart(const std::string& text, Line line, std::size_t place) {
    std::size_t start = line.begin;
    while (start < place) {
        const std::size_t next = start + decodeUtf8({text.data(), line.end}, start).length;
        if (next > place)
            return start;
        start = next;
    }
    return start;
}

void edit(TextDocument& document, History& history, FuzzedDataProvider& data) {
    const std::string before = history.text();
    const std::vector<Line> lines = linesOf(before);
    const auto place = [&]() -> std::pair<TextPosition, std::size_t> {
        const auto line = data.ConsumeIntegralInRange<std::size_t>(0, lines.size() - 1);
        const std::size_t length = lines[line].end - lines[line].begin;
        const auto byte = data.ConsumeIntegralInRange<std::size_t>(0, length + 1);
        return {
            {line, byte}, characterStart(before, lines[line], lines[line].begin + std::min(byte, length))};
    };
    auto [from, begin] = place();
    auto [to, end] = data.ConsumeBool() ? place() : std::pair(from, begin);
    if (to < from) {
        std::swap(from, to);
        std::swap(begin, end);
    }
    const std::string typed = data.ConsumeRandomLengthString(6);
    std::string inserted;
    for (std::size_t i = 0; i < typed.size(); ++i) {
        if (typed[i] == '\r' && i + 1 < typed.size() && typed[i + 1] == '\n')
            continue;
        if (typed[i] == '\r' || typed[i] == '\n')
            inserted += document.lineEnd();
        else
            inserted += typed[i];
    }
    // Line ends that were two stay two.
    if (inserted.starts_with('\n') && begin > 0 && before[begin - 1] == '\r')
        inserted = '\r' + inserted;
    if (inserted.ends_with('\r') && end < before.size() && before[end] == '\n')
        inserted += '\n';

    const auto joining =
        data.ConsumeBool() ? TextDocument::Joining::WithPrevious : TextDocument::Joining::Alone;
    const TextChange change = document.replace({from, to}, typed, joining);
    std::string after = before;
    after.replace(begin, end - begin, inserted);
    checkChange(change, before, after);
    if (begin != end || !inserted.empty())
        history.edit(after);
}

void step(TextDocument& document, History& history, FuzzedDataProvider& data) {
    const std::string before = history.text();
    switch (data.ConsumeIntegralInRange(0, 9)) {
    case 0:
        REQUIRE(document.canRedo() == history.canRedo());
        if (const auto change = document.redo()) {
            history.redo(whole(document));
            checkChange(*change, before, history.text());
        }
        break;
    case 1:
    case 2:
        if (const auto change = document.undo()) {
            history.undo(whole(document));
            checkChange(*change, before, history.text());
        }
        break;
    case 3:
        document.markSaved();
        history.save();
        break;
    case 4:
        checkSearch(document, before, data);
        break;
    case 5:
        document.endUndoStep();
        break;
    default:
        edit(document, history, data);
    }
    REQUIRE(document.isEdited() || history.text() == history.saved());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    const std::optional<std::string> wanted[] = {std::nullopt, encodings::utf8, encodings::utf16LittleEndian,
        encodings::utf16BigEndian, encodings::windows1252};
    const auto encoding = wanted[data.ConsumeIntegralInRange(0, 4)];
    const std::string read = data.ConsumeRandomLengthString(600);
    auto document = TextDocument::fromBytes(read, basicCodePages(), encoding);
    REQUIRE(written(document) == read);
    REQUIRE(!document.isEdited() && document.isExact());
    REQUIRE(written(document.reinterpreted(encodings::utf16BigEndian, basicCodePages())) == read);

    History history(whole(document));
    checkText(document, history.text(), Check::Everything);
    while (data.remaining_bytes() > 0) {
        step(document, history, data);
        checkText(document, history.text(), Check::Lines);
    }
    checkText(document, history.text(), Check::Everything);
    if (document.encoding().name == encodings::utf8)
        REQUIRE(written(document) == (document.encoding().mark ? "\xEF\xBB\xBF" : "") + history.text());
    while (document.undo())
        history.undo(whole(document));
    REQUIRE(written(document) == read);
    checkText(document, history.text(), Check::Everything);
    return 0;
}
