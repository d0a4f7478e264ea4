#include "support/fake_code_pages.h"
#include "text/search.h"
#include "text/text_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace genutil::text {

void PrintTo(const TextPosition& position, std::ostream* out) {
    *out << position.line << ':' << position.byte;
}
void PrintTo(const TextChange& change, std::ostream* out) {
    *out << testing::PrintToString(change.from) << " to " << testing::PrintToString(change.oldEnd) << ", now "
         << testing::PrintToString(change.newEnd);
}

namespace {

using Joining = TextDocument::Joining;

std::string whole(const TextDocument& document) {
    return document.text({{}, document.end()});
}

std::string written(const TextDocument& document, const CodePages& pages = basicCodePages()) {
    std::string bytes;
    document.write([&](std::string_view block) { bytes += block; }, pages);
    return bytes;
}

TEST(TextDocument, PutsAnEditWhereACharacterAndALineEndAllowIt) {
    const struct {
        std::string what;
        std::string before;
        TextRange range;
        std::string text;
        std::string after;
        TextChange change;
    } cases[] = {
        {"in an empty text", "", {{0, 0}, {0, 0}}, "ab", "ab", {{0, 0}, {0, 0}, {0, 2}}},
        {"nothing for nothing", "ab", {{0, 1}, {0, 1}}, "", "ab", {{0, 1}, {0, 1}, {0, 1}}},
        {"behind the text", "a\nb", {{7, 7}, {9, 0}}, "c", "a\nbc", {{1, 1}, {1, 1}, {1, 2}}},
        {"behind its line's end", "a\r\nb", {{0, 5}, {0, 9}}, "x", "ax\r\nb", {{0, 1}, {0, 1}, {0, 2}}},
        {"over lines", "ab\ncd\nef", {{0, 1}, {2, 1}}, "x", "axf", {{0, 1}, {2, 1}, {0, 2}}},
        {"inside characters", "€😀", {{0, 2}, {0, 5}}, "x", "x😀", {{0, 0}, {0, 3}, {0, 1}}},
        {"line ends become the text's", "a\r\nb", {{1, 1}, {1, 1}}, "\nc\rd\r\n", "a\r\nb\r\nc\r\nd\r\n",
            {{1, 1}, {1, 1}, {4, 0}}},
        {"the commonest line end", "a\rb\rc\n", {{0, 1}, {0, 1}}, "\n", "a\r\rb\rc\n",
            {{0, 1}, {0, 1}, {1, 0}}},
        {"a new line before a lone LF", "a\rb\rc\nd", {{2, 1}, {2, 1}}, "\n", "a\rb\rc\r\n\nd",
            {{2, 1}, {2, 1}, {3, 0}}},
        {"a new line behind a lone CR", "a\nb\nc\rd", {{3, 0}, {3, 0}}, "\n", "a\nb\nc\r\r\nd",
            {{3, 0}, {3, 0}, {4, 0}}},
        {"a lone CR and an LF come together", "a\rX\nb", {{1, 0}, {1, 1}}, "", "a\r\nb",
            {{0, 1}, {1, 1}, {0, 1}}},
    };
    for (const auto& [what, before, range, text, after, change] : cases) {
        SCOPED_TRACE(what);
        auto document = TextDocument::fromBytes(before);
        EXPECT_EQ(document.replace(range, text), change);
        EXPECT_EQ(whole(document), after);
        const auto same = TextDocument::fromBytes(after);
        ASSERT_EQ(document.lineCount(), same.lineCount());
        for (std::size_t i = 0; i < same.lineCount(); ++i)
            EXPECT_EQ(document.line(i), same.line(i));
        EXPECT_EQ(document.end(), same.end());

        EXPECT_EQ(document.isEdited(), before != after);
        if (const auto undone = document.undo()) {
            EXPECT_EQ(*undone, (TextChange{change.from, change.newEnd, change.oldEnd}));
        }
        EXPECT_EQ(whole(document), before);
        EXPECT_FALSE(document.isEdited());
        if (const auto redone = document.redo()) {
            EXPECT_EQ(*redone, change);
        }
        EXPECT_EQ(whole(document), after);
    }
}

// Acts as a user at the caret: letters are typed, '<' is Backspace, '>' is Delete, '^' pastes "P", '|' moves
// the caret away and back, 'u' undoes, 'r' redoes, 's' saves.
void act(TextDocument& document, std::size_t& caret, char key) {
    const auto edit = [&](std::size_t from, std::size_t to, const std::string& text, Joining joining) {
        caret = document.offsetOf(
            document.replace({document.positionAt(from), document.positionAt(to)}, text, joining).newEnd);
    };
    switch (key) {
    case '<':
        return edit(caret - 1, caret, "", Joining::WithPrevious);
    case '>':
        return edit(caret, caret + 1, "", Joining::WithPrevious);
    case '^':
        return edit(caret, caret, "P", Joining::Alone);
    case '|':
        return document.endUndoStep();
    case 's':
        return document.markSaved();
    case 'u':
    case 'r':
        if (const auto change = key == 'u' ? document.undo() : document.redo())
            caret = document.offsetOf(change->newEnd);
        return;
    default:
        return edit(caret, caret, std::string(1, key), Joining::WithPrevious);
    }
}

TEST(TextDocument, UndoesWhatAUserTakesForOneStep) {
    const struct {
        std::string what;
        std::string keys; // with the caret between "12" and "34"
        std::vector<std::string> undone;
    } cases[] = {
        {"typing", "abc", {"12abc34", "1234"}},
        {"a line end begins a step", "ab\nc", {"12ab\nc34", "12ab34", "1234"}},
        {"so does a moved caret", "a|b", {"12ab34", "12a34", "1234"}},
        {"a paste is its own step", "a^b", {"12aPb34", "12aP34", "12a34", "1234"}},
        {"Backspace", "<<", {"34", "1234"}},
        {"Delete", ">>", {"12", "1234"}},
        {"both", "<>", {"14", "1234"}},
        {"Backspace takes typing back", "ab<", {"12a34", "12ab34", "1234"}},
        {"typing behind Backspace", "<ab", {"1ab34", "134", "1234"}},
        {"typing goes on after undoing", "abuc", {"12c34", "1234"}},
        {"saving ends a step", "asb", {"12ab34", "12a34", "1234"}},
        {"a redone step is whole", "abu|r", {"12ab34", "1234"}},
    };
    for (const auto& [what, keys, undone] : cases) {
        SCOPED_TRACE(what);
        auto document = TextDocument::fromBytes("1234");
        std::size_t caret = 2;
        for (const char key : keys)
            act(document, caret, key);
        std::vector<std::string> texts{whole(document)};
        while (document.undo())
            texts.push_back(whole(document));
        EXPECT_EQ(texts, undone);
        while (document.redo()) {
        }
        EXPECT_EQ(whole(document), undone.front());
    }
}

TEST(TextDocument, KnowsWhetherItDiffersFromWhatWasSaved) {
    const std::pair<std::string, bool> cases[] = {{"", false}, {"a", true}, {"au", false}, {"as", false},
        {"asu", true}, {"asur", false}, {"asub", true}, {"asubu", true}, {"asuburu", true}, {"asbu", false}};
    for (const auto& [keys, edited] : cases) {
        auto document = TextDocument::fromBytes("1234");
        std::size_t caret = 2;
        for (const char key : keys)
            act(document, caret, key);
        EXPECT_EQ(document.isEdited(), edited) << keys;
    }
}

TEST(TextDocument, KeepsTheWidthThatNoLineExceeds) {
    auto document = TextDocument::fromBytes("123\n12345\n1");
    document.replace({{0, 0}, {0, 0}}, "new\nlines\n");
    EXPECT_EQ(document.widestLine().index, 3u); // the same line as before
    document.replace({{4, 1}, {4, 1}}, "\t2\n");
    EXPECT_EQ(document.widestLine().index, 4u);
    EXPECT_EQ(document.widestLine().columns, 9u);
    document.replace({{0, 0}, document.end()}, "");
    EXPECT_EQ(document.widestLine().index, 0u);
    document.undo();
    document.undo();
    document.undo();
    EXPECT_EQ(document.widestLine().index, 1u);
    EXPECT_EQ(document.widestLine().columns, 5u);
}

TEST(TextDocument, KeepsLinesThatSpanEditsForAWhile) {
    auto document = TextDocument::fromBytes("");
    for (std::size_t i = 0; i < TextDocument::keptLines + 6; ++i) {
        document.replace({document.end(), document.end()}, std::string(100, char('0' + i % 10)) + "\n");
        document.replace({{i, 50}, {i, 50}}, "|");
    }
    const std::string_view first = document.line(0);
    for (std::size_t i = 1; i < TextDocument::keptLines; ++i)
        document.line(i);
    EXPECT_EQ(first, std::string(50, '0') + "|" + std::string(50, '0'));
    EXPECT_EQ(document.line(0).data(), first.data());
    document.replace({{0, 50}, {0, 51}}, "-");
    EXPECT_EQ(document.line(0), std::string(50, '0') + "-" + std::string(50, '0'));
}

TEST(TextDocument, IsNotWrittenInAnEncodingThatLacksACharacter) {
    const std::string damage = "\xFF";
    const struct {
        std::string what;
        std::string typed;
        Encoding encoding;
        std::string message;
    } cases[] = {
        {"character", "ü\n12€測", {"windows-1252"}, "U\\+6E2C \\(測\\) in line 2, column 4 .*windows-1252"},
        {"beyond 16 bits", "😀", {"windows-1252"}, "U\\+1F600 .*line 1, column 1 "},
        {"code page", "Жü", {"Alphabet"}, "U\\+00FC \\(ü\\) in line 1, column 2 .*Alphabet"},
        {"damaged byte", "a" + damage, {"UTF-16LE", true}, "U\\+FFFD .*line 1, column 2 .*UTF-16LE"},
        {"behind the first block", std::string(3'000'000, '-') + "測", {"windows-1252"}, "column 3000001 "},
    };
    const fake::CodePages pages("", "windows-1252");
    for (const auto& [what, typed, encoding, message] : cases) {
        SCOPED_TRACE(what);
        TextDocument document;
        document.replace({}, typed);
        document.setEncoding(encoding);
        bool wrote = false;
        try {
            document.write([&](std::string_view) { wrote = true; }, pages);
            ADD_FAILURE() << "was written";
        } catch (const UnencodableCharacter& error) {
            EXPECT_THAT(error.what(), testing::ContainsRegex(message));
        }
        EXPECT_FALSE(wrote);
    }
}

TEST(TextDocument, IsWrittenInItsEncodingAfterEdits) {
    const std::string umlauts(1 << 20, '\xFC');
    const struct {
        std::string what;
        std::string before;
        std::string after; // "X" in front of the last line
    } cases[] = {
        {"marked UTF-8",
            "\xEF\xBB\xBF"
            "1\r\n2",
            "\xEF\xBB\xBF"
            "1\r\nX2"},
        {"windows-1252", "\x80\n\xB0", "\x80\nX\xB0"},
        {"more than is written at once", "\n-" + umlauts, "\nX-" + umlauts},
        {"UTF-16, lone surrogate and odd byte",
            std::string("\xFF\xFE\n\0\0\xD8"
                        "9",
                7),
            std::string("\xFF\xFE\n\0X\0\0\xD8"
                        "9",
                9)},
    };
    for (const auto& [what, before, after] : cases) {
        SCOPED_TRACE(what);
        auto document = TextDocument::fromBytes(before);
        document.replace({{1, 0}, {1, 0}}, "X");
        EXPECT_EQ(written(document), after);
        document.undo();
        EXPECT_EQ(written(document), before);
    }
}

TEST(TextDocument, KeepsBytesThatItsWantedEncodingDoesNotDefine) {
    const fake::CodePages pages("", "windows-1252");
    const std::string bytes = "1\n\xB2\xE2 \xB0";
    auto document = TextDocument::fromBytes(bytes, pages, "Pairs");
    EXPECT_FALSE(document.isExact());
    EXPECT_EQ(document.line(1), "\u80E2 \uFFFD");
    EXPECT_EQ(written(document, pages), bytes);
    EXPECT_EQ(document.reinterpreted("windows-1252", pages).line(1), "²â °");

    document.replace({{0, 0}, {0, 0}}, "0");
    EXPECT_THROW(written(document, pages), UnencodableCharacter); // what the damaged byte was is not known
    document.replace({{1, 4}, {1, 7}}, "");
    EXPECT_EQ(written(document, pages), "01\n\xB2\xE2 ");
}

TEST(Find, GivesTheNextPlaceInEitherDirection) {
    constexpr auto Forward = SearchDirection::Forward;
    constexpr auto Backward = SearchDirection::Backward;
    const auto text = [] {
        auto document =
            TextDocument::fromBytes("Punkt PUNKT\npunkte\nHöhe HÖHE ŸÿÃ¿\nΣίσυφος λόγος\nЖук aaa\n");
        document.replace({{1, 3}, {1, 4}}, "k"); // the line spans pieces
        return document;
    }();
    const struct {
        SearchQuery query;
        TextPosition start;
        SearchDirection direction;
        std::optional<TextPosition> found;
    } cases[] = {
        {{"punkt"}, {0, 0}, Forward, TextPosition{0, 0}},
        {{"punkt"}, {0, 1}, Forward, TextPosition{0, 6}},
        {{"punkt", true}, {0, 0}, Forward, TextPosition{1, 0}},
        {{"punkt", false, true}, {0, 7}, Forward, std::nullopt},
        {{"nkte"}, {0, 0}, Forward, TextPosition{1, 2}},
        {{"punkt"}, {1, 4}, Backward, TextPosition{0, 6}},
        {{"punkt"}, {1, 5}, Backward, TextPosition{1, 0}},
        {{"punkt", true}, {0, 11}, Backward, std::nullopt},
        {{"höhe"}, {2, 1}, Forward, TextPosition{2, 6}},
        {{"ÿ"}, {2, 12}, Forward, TextPosition{2, 12}},
        {{"Ÿ"}, {2, 13}, Forward, TextPosition{2, 14}},
        {{"öhe", false, true}, {0, 0}, Forward, std::nullopt}, // part of a word
        {{"ΣΊΣΥΦΟΣ"}, {0, 0}, Forward, TextPosition{3, 0}},
        {{"жУК", false, true}, {0, 0}, Forward, TextPosition{4, 0}},
        {{"aa"}, {5, 0}, Backward, TextPosition{4, 8}},
        {{"e\nH"}, {0, 0}, Forward, std::nullopt},
        {{""}, {0, 0}, Forward, std::nullopt},
    };
    for (const auto& [query, start, direction, place] : cases) {
        SCOPED_TRACE(query.text + " from line " + std::to_string(start.line));
        const auto found = find(text, query, start, direction);
        ASSERT_EQ(found.has_value(), place.has_value());
        if (found) {
            EXPECT_EQ(found->from, *place);
            EXPECT_EQ(found->to, (TextPosition{place->line, place->byte + query.text.size()}));
        }
    }
}

TEST(Find, SeesMatchesAcrossTheBlocksThatItLooksAt) {
    const std::string word = "Zwischenpunkt";
    for (const std::size_t before : {65523u, 65530u, 65535u, 65536u, 131066u}) {
        const auto text = TextDocument::fromBytes(std::string(before, 'z') + word + std::string(before, 'Z'));
        const auto ahead = find(text, {word}, {}, SearchDirection::Forward);
        const auto behind = find(text, {word}, text.end(), SearchDirection::Backward);
        ASSERT_TRUE(ahead && behind) << before;
        EXPECT_EQ(ahead->from, (TextPosition{0, before}));
        EXPECT_EQ(*behind, *ahead);
    }
}

} // namespace
} // namespace genutil::text
