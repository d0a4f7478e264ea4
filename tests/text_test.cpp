#include "support/fake_code_pages.h"
#include "text/bare_letters.h"
#include "text/character_width.h"
#include "text/text_document.h"
#include "text/utf8.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace genutil::text {
namespace {

using namespace std::string_literals;

std::vector<std::string> linesOf(const TextDocument& document) {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < document.lineCount(); ++i)
        lines.emplace_back(document.line(i));
    return lines;
}

std::string written(const TextDocument& document, const CodePages& pages = basicCodePages()) {
    std::string bytes;
    document.write([&](std::string_view block) { bytes += block; }, pages);
    return bytes;
}

struct Sample {
    std::string what;
    std::string bytes;
    std::vector<std::string> lines;
    WidestLine widest;
    Encoding encoding = {};
    std::optional<std::string> wanted = std::nullopt;
};

TEST(TextDocument, SplitsDecodesMeasuresAndWritesBackEveryKindOfText) {
    const std::string utf8Mark = "\xEF\xBB\xBF";
    const Encoding markedUtf8{"UTF-8", true};
    const Encoding windows1252{"windows-1252"};
    const Sample samples[] = {
        {"empty", "", {""}, {0, 0}},
        {"mark only", utf8Mark, {""}, {0, 0}, markedUtf8},
        {"no final line end", "one\nthree", {"one", "three"}, {1, 5}},
        {"final line end", "three\none\n", {"three", "one", ""}, {0, 5}},
        {"all line ends mixed", "a\nbb\r\nccc\rdd\r\r\n\n\re", {"a", "bb", "ccc", "dd", "", "", "", "e"},
            {2, 3}},
        {"CR as the last byte", "a\r", {"a", ""}, {0, 1}},
        {"first of equally wide lines", "x\nabc\ndef\n", {"x", "abc", "def", ""}, {1, 3}},
        {"tab reaches the next stop", "1234567\t\n12345678\t", {"1234567\t", "12345678\t"}, {1, 16}},
        {"tabs in a short line", std::string(20, '-') + "\n1\t1\t1\t1\t1\t1",
            {std::string(20, '-'), "1\t1\t1\t1\t1\t1"}, {1, 41}},
        {"zero byte and form feed", "a\0b\n\fab"s, {"a\0b"s, "\fab"}, {0, 3}},
        {"wide before long", "測量点\nabcde", {"測量点", "abcde"}, {0, 6}},
        {"combining marks take no column", "e\u0301e\u0301\nabc", {"e\u0301e\u0301", "abc"}, {1, 3}},
        {"mark is no column", utf8Mark + "\nab", {"", "ab"}, {1, 2}, markedUtf8},
        {"damage behind a mark", utf8Mark + "a\xFF", {"a\xFF"}, {0, 2}, markedUtf8},
        {"damage that is wanted", "a\xFF\xC3", {"a\xFF\xC3"}, {0, 3}, {}, "utf-8"},
        {"Windows-1252", "25\xB0\n\x80\x81\x9F", {"25°", "€\u0081Ÿ"}, {0, 3}, windows1252},
        {"UTF-8 cut off", "caf\xC3", {"cafÃ"}, {0, 4}, windows1252},
        {"UTF-8 that is not wanted", "\xC3\xA9", {"Ã©"}, {0, 2}, windows1252, "Windows-1252"},
        {"UTF-16 LE", "\xFF\xFE\xE9\0\r\0\n\0\x3D\xD8\0\xDE"s, {"é", "😀"}, {1, 2}, {"UTF-16LE", true}},
        {"UTF-16 BE, lone surrogate, odd byte", "\xFE\xFF\0a\0\n\xD8\0\0b\0"s,
            {"a", "\xED\xA0\x80"
                  "b"},
            {1, 2}, {"UTF-16BE", true}},
        {"UTF-16 LE without mark", "1\0002\0003\0004\0005\0006\0007\0\xAC\x20\n\0"s, {"1234567€", ""}, {0, 8},
            {"UTF-16LE"}},
        {"UTF-16 BE without mark, odd byte", "\0a\0b\0c\0"s, {"abc"}, {0, 3}, {"UTF-16BE"}},
        {"UTF-32 LE", "\xFF\xFE\0\0\xE9\0\0\0\n\0\0\0\0\xF6\1\0"s, {"é", "😀"}, {1, 2}, {"UTF-32LE", true}},
        {"UTF-32 BE, cut", "\0\0\xFE\xFF\0\0\0a\0\0"s, {"a"}, {0, 1}, {"UTF-32BE", true}},
        {"UTF-16 that only the user knows", "\x2C\x6E\xCF\x91"s, {"測量"}, {0, 4}, {"UTF-16LE"}, "UTF-16LE"},
    };
    for (const Sample& sample : samples) {
        SCOPED_TRACE(sample.what);
        const auto document = TextDocument::fromBytes(sample.bytes, basicCodePages(), sample.wanted);
        EXPECT_EQ(linesOf(document), sample.lines);
        EXPECT_EQ(document.widestLine().index, sample.widest.index);
        EXPECT_EQ(document.widestLine().columns, sample.widest.columns);
        EXPECT_EQ(document.encoding(), sample.encoding) << document.encoding().name;
        EXPECT_EQ(written(document), sample.bytes);
        EXPECT_THROW(static_cast<void>(document.line(sample.lines.size())), std::out_of_range);
    }
}

// Gives a few bytes at a time, and says that there are fewer or more.
class Trickle : public ByteSource {
public:
    Trickle(std::string bytes, std::size_t portion, std::uint64_t expected)
        : bytes_(std::move(bytes)), portion_(portion), expected_(expected) {}
    std::uint64_t expectedSize() const override { return expected_; }
    std::size_t read(std::span<char> into) override {
        const std::size_t count = std::min({portion_, into.size(), bytes_.size() - given_});
        std::copy_n(bytes_.begin() + std::ptrdiff_t(given_), count, into.begin());
        given_ += count;
        return count;
    }

private:
    std::string bytes_;
    std::size_t portion_;
    std::uint64_t expected_;
    std::size_t given_ = 0;
};

TEST(TextDocument, IsTheSameWhereverReadingDividesItsBytes) {
    const std::string tail = "é\r\n\t測\r\r\n\xF0\x9F\x98\x80\r";
    const std::vector<std::string> lines = {"é", "\t測", "", "😀", ""};
    for (const std::size_t before :
        {5000u, 16369u, 16376u, 16379u, 16380u, 16381u, 16382u, 16383u, 16384u, 70000u})
        for (const std::size_t portion : {1u, 2u, 3u, 4096u, 100000u}) {
            SCOPED_TRACE(testing::Message() << before << " bytes before, " << portion << " at a time");
            Trickle source(std::string(before - 1, '-') + "\n" + tail, portion, portion == 3 ? 1 << 20 : 7);
            const TextDocument document = TextDocument::load(source);
            EXPECT_THAT(linesOf(document), testing::ElementsAre(std::string(before - 1, '-'), lines[0],
                                               lines[1], lines[2], lines[3], lines[4]));
            EXPECT_EQ(document.widestLine().columns, before - 1);
            EXPECT_EQ(document.encoding(), Encoding());

            Trickle western(std::string(before - 1, '-') + "\r\n\xB0", portion, 0);
            EXPECT_THAT(linesOf(TextDocument::load(western)),
                testing::ElementsAre(std::string(before - 1, '-'), "°"));
            Trickle cutOff(std::string(before - 1, '-') + '\xC3' + std::string(20'000, '-'), portion, 0);
            EXPECT_EQ(TextDocument::load(cutOff).encoding().name, "windows-1252");
            Trickle wanted("\xFF" + std::string(before, '-') + "\n", portion, 0);
            const auto damaged = TextDocument::load(wanted, basicCodePages(), encodings::utf8);
            EXPECT_EQ(damaged.lineCount(), 2u);
            EXPECT_EQ(damaged.widestLine().columns, before + 1);
            Trickle accented("é" + std::string(before, '-') + "\n", portion, 0);
            EXPECT_EQ(TextDocument::load(accented).widestLine().columns, before + 1);
        }
}

TEST(TextDocument, IsNotReadInAnEncodingThatNobodyKnows) {
    try {
        TextDocument::fromBytes("a", basicCodePages(), "EBCDIC-37");
        ADD_FAILURE() << "was read";
    } catch (const std::invalid_argument& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("EBCDIC-37"));
    }
}

TEST(TextDocument, FindsStopsAtEveryPlaceOfAMachineWord) {
    for (const std::string stop : {"\n", "\r", "\t", "é", "\x0F", "\x10", "\x7F"}) {
        for (std::size_t before = 0; before < 20; ++before) {
            const std::string text = std::string(before, '~') + stop + std::string(20, ' ');
            const bool ends = stop == "\n" || stop == "\r";
            const std::size_t whole = stop == "\t" ? (before / 8 + 1) * 8 + 20 : before + 21;
            const TextDocument document = TextDocument::fromBytes(text);
            EXPECT_EQ(document.lineCount(), ends ? 2u : 1u) << testing::PrintToString(text);
            EXPECT_EQ(document.widestLine().columns, ends ? 20u : whole) << testing::PrintToString(text);
        }
    }
}

TEST(LineStarts, KeepsOffsetsBeyondFourGibibytes) {
    const std::uint64_t offsets[] = {
        5, 0xFFFF'FFFF, 0x1'0000'0000, 0x1'2345'6789, 0x4'0000'0001, 0x4'0000'0002};
    LineStarts starts;
    for (const std::uint64_t offset : offsets)
        starts.append(offset);
    for (std::size_t i = 0; i < std::size(offsets); ++i) {
        EXPECT_EQ(starts[i], offsets[i]);
        EXPECT_EQ(starts.countUpTo(offsets[i] - 1), i);
        EXPECT_EQ(starts.countUpTo(offsets[i]), i + 1);
    }
}

TEST(TextDocument, TrustsAGuessOfItsEncodingOnlyOnEvidence) {
    std::string alphabet;
    for (int i = 0; i < 80; ++i)
        alphabet += char(0xC0 + i % 40);
    std::string degrees;
    for (int i = 0; i < 100; ++i)
        degrees += "25\xB0"
                   "00 ";
    const std::string pairs = "\xB2\xE2\xC1\xBF\xB5\xE3\xC3\xFB";
    const std::string chance = "gr\xF6\xDF"
                               "er 25\xB0"
                               "A 25\xB1"
                               "B 25\xB2"
                               "C 25\xB3"
                               "D 25\xB5"
                               "E ";
    const struct {
        std::string what;
        std::string bytes;
        std::string guess;
        std::string system;
        std::string expected;
    } cases[] = {
        {"a handful of signs", "25\xB0 \xB1 3 m\xB2", "Alphabet", "windows-1252", "windows-1252"},
        {"a page of the same sign", degrees, "Alphabet", "windows-1252", "windows-1252"},
        {"a page of words", alphabet, "Alphabet", "windows-1252", "Alphabet"},
        {"half a page of words", alphabet.substr(0, 60), "Alphabet", "windows-1252", "windows-1252"},
        {"a page far behind", std::string(100'000, '\n') + alphabet, "Alphabet", "windows-1252", "Alphabet"},
        {"no guess", alphabet, "", "Alphabet", "Alphabet"},
        {"a guess that nobody knows", alphabet, "Klingon", "Alphabet", "Alphabet"},
        {"Latin-1 means what all take it for", alphabet, "ISO-8859-1", "Alphabet", "windows-1252"},
        {"four double-byte characters", pairs, "Pairs", "Alphabet", "Pairs"},
        {"three", pairs.substr(2), "Pairs", "Alphabet", "Alphabet"},
        {"one half is missing", pairs + pairs + "\xB0", "Pairs", "Alphabet", "Alphabet"},
        {"pairs by chance", chance + chance, "Pairs", "Alphabet", "Alphabet"},
        {"nothing fits", "\xB2\xE2\xC1", "Pairs", "Pairs", "windows-1252"},
        {"the system's texts are UTF-8", "25\xB0", "", "UTF-8", "windows-1252"},
    };
    for (const auto& [what, bytes, guess, system, expected] : cases) {
        SCOPED_TRACE(what);
        const fake::CodePages pages(guess, system);
        const auto document = TextDocument::fromBytes(bytes, pages);
        EXPECT_EQ(document.encoding().name, expected);
        EXPECT_TRUE(document.isExact());
        EXPECT_EQ(written(document, pages), bytes);
    }
}

TEST(CharacterWidth, FollowsTheUnicodeDataAtTheEdgesOfItsRanges) {
    const std::pair<char32_t, int> widths[] = {{U'A', 1}, {0x00AD, 1}, {0x02FF, 1}, {0x0300, 0}, {0x036F, 0},
        {0x0370, 1}, {0x0483, 0}, {0x10FF, 1}, {0x1100, 2}, {0x1160, 0}, {0x2010, 1}, {0x302A, 0},
        {0x3042, 2}, {0x4DC0, 1}, {0x9FFF, 2}, {0xD7A3, 2}, {0xD7A4, 1}, {0xFE0F, 0}, {0xFF01, 2},
        {0xFF61, 1}, {0x1F600, 2}, {0x20000, 2}, {0xE01EF, 0}, {0xE01F0, 1}, {0x10FFFF, 1}};
    for (const auto& [codePoint, width] : widths)
        EXPECT_EQ(characterWidth(codePoint), width) << std::hex << static_cast<unsigned>(codePoint);
}

TEST(CharacterWidth, GivesInvisibleControlsTheColumnOfTheirMark) {
    const char32_t seen[] = {
        0, 0x1B, 0x7F, 0x85, 0x061C, 0x200B, 0x200E, 0x200F, 0x202A, 0x202E, 0x2060, 0x2066, 0x2069, 0xFEFF};
    for (const char32_t codePoint : seen)
        EXPECT_TRUE(isInvisibleControl(codePoint) && characterWidth(codePoint) == 1) << unsigned(codePoint);
    for (const char32_t codePoint : {U'\t', U' ', char32_t(0xA0), char32_t(0x200C), char32_t(0x200D)})
        EXPECT_FALSE(isInvisibleControl(codePoint)) << unsigned(codePoint);
    EXPECT_EQ(characterWidth(0x200D), 0);
}

TEST(BareLetters, LeaveCaseAccentsAndTheUnicodeFormAside) {
    // By the canonical decompositions of the Unicode data; "\xff" is no character.
    const std::pair<std::string, std::string> cases[] = {{"ÄÖÜß ẞ", "aouss ss"}, {"A\u0308\u0301", "a"},
        {"Łódź Øre Æbelø þ", "lodz ore aebelo th"}, {"ĲSSEL İı", "ijssel ii"}, {"Ấp Ǖ Ȫ", "ap u o"},
        {"ΆΟΔΌΣ ς", "αοδοσ σ"}, {"Йод Ёж", "иод еж"}, {"ガ\u304b\u3099", "カか"},
        {"각", "\u1100\u1161\u11a8"}, {"×÷½", "×÷½"}, {"a\xff", "a\xff"}};
    for (const auto& [text, bare] : cases)
        EXPECT_EQ(text::bareLetters(text), bare) << text;
}

TEST(Utf8, TakesDamagedBytesByTheirMaximalSubpart) {
    const struct {
        std::string bytes;
        std::u32string expected;
    } cases[] = {
        {"\xC0\x80", U"\uFFFD\uFFFD"},                         // overlong
        {"\xE0\x9F\xBF", U"\uFFFD\uFFFD\uFFFD"},               // overlong
        {"\xED\xA0\x80Z", U"\uFFFDZ"},                         // surrogate: one character
        {"\xED\xBF", U"\uFFFD"},                               // surrogate cut off
        {"\xF4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD"},     // above U+10FFFF
        {"\xF0\x90\x80", U"\uFFFD"},                           // cut off by the end
        {"\xE2\x82Z", U"\uFFFDZ"},                             // cut off by a character
        {"\xF1\x80\x80\xE1\x80\xC2Z", U"\uFFFD\uFFFD\uFFFDZ"}, // three cut off in a row
        {"12345678\xBF", U"12345678\uFFFD"},                   // continuation byte alone, after a whole word
    };
    for (const auto& [bytes, expected] : cases) {
        std::u32string decoded;
        for (std::size_t at = 0; at < bytes.size(); at += decodeUtf8(bytes, at).length)
            decoded += decodeUtf8(bytes, at).codePoint;
        EXPECT_EQ(decoded, expected) << testing::PrintToString(bytes);
        EXPECT_FALSE(isValidUtf8(bytes)) << testing::PrintToString(bytes);
    }
}

TEST(Utf8, CarriesEveryCharacter) {
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        std::string utf8;
        appendUtf8(utf8, codePoint);
        ASSERT_TRUE(isValidUtf8(utf8)) << std::hex << static_cast<unsigned>(codePoint);
        ASSERT_EQ(decodeUtf8(utf8, 0).codePoint, surrogate ? replacementCharacter : codePoint);
    }
    EXPECT_EQ(fromUtf16Bytes("\x3D\xD8\x3D\xD8\0\xDE\0\xDE"s, ByteOrder::LittleEndian),
        "\xED\xA0\xBD\U0001F600\xED\xB8\x80"); // only the two in the middle are partners
}

} // namespace
} // namespace genutil::text
