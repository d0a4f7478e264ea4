#include "support/another_user.h"
#include "text/character_width.h"
#include "text/text_document.h"
#include "text/utf8.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace genutil::text {
namespace {

using namespace std::string_literals;

struct Sample {
    std::string what;
    std::string bytes;
    std::vector<std::string> lines;
    WidestLine widest;
    Encoding encoding = Encoding::Utf8;
};

TEST(TextDocument, SplitsDecodesAndMeasuresEveryKindOfText) {
    const std::string utf8Mark = "\xEF\xBB\xBF";
    const Sample samples[] = {
        {"empty", "", {""}, {0, 0}},
        {"mark only", utf8Mark, {""}, {0, 0}, Encoding::Utf8WithMark},
        {"no final line end", "one\nthree", {"one", "three"}, {1, 5}},
        {"final line end", "three\none\n", {"three", "one", ""}, {0, 5}},
        {"all line ends mixed", "a\nbb\r\nccc\rdd\r\r\n\n\re", {"a", "bb", "ccc", "dd", "", "", "", "e"},
            {2, 3}},
        {"CR as the last byte", "a\r", {"a", ""}, {0, 1}},
        {"first of equally wide lines", "x\nabc\ndef\n", {"x", "abc", "def", ""}, {1, 3}},
        {"tab reaches the next stop", "1234567\t\n12345678\t", {"1234567\t", "12345678\t"}, {1, 16}},
        {"zero byte and form feed", "a\0b\n\fab"s, {"a\0b"s, "\fab"}, {0, 3}},
        {"wide before long", "測量点\nabcde", {"測量点", "abcde"}, {0, 6}},
        {"combining marks take no column", "e\u0301e\u0301\nabc", {"e\u0301e\u0301", "abc"}, {1, 3}},
        {"mark is no column", utf8Mark + "\nab", {"", "ab"}, {1, 2}, Encoding::Utf8WithMark},
        {"damage behind a mark", utf8Mark + "a\xFF", {"a\xFF"}, {0, 2}, Encoding::Utf8WithMark},
        {"Windows-1252", "25\xB0\n\x80\x81\x9F", {"25°", "€\u0081Ÿ"}, {0, 3}, Encoding::Windows1252},
        {"UTF-8 cut off", "caf\xC3", {"cafÃ"}, {0, 4}, Encoding::Windows1252},
        {"UTF-16 LE", "\xFF\xFE\xE9\0\r\0\n\0\x3D\xD8\0\xDE"s, {"é", "😀"}, {1, 2},
            Encoding::Utf16LittleEndian},
        {"UTF-16 BE, odd byte", "\xFE\xFF\0a\0\n\xD8\0\0b\0"s, {"a", "\uFFFDb\uFFFD"}, {1, 3},
            Encoding::Utf16BigEndian},
    };
    for (const Sample& sample : samples) {
        SCOPED_TRACE(sample.what);
        const TextDocument document = TextDocument::fromBytes(sample.bytes);
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < document.lineCount(); ++i)
            lines.emplace_back(document.line(i));
        EXPECT_EQ(lines, sample.lines);
        EXPECT_EQ(document.widestLine().index, sample.widest.index);
        EXPECT_EQ(document.widestLine().columns, sample.widest.columns);
        EXPECT_EQ(document.encoding(), sample.encoding);
        EXPECT_THROW(static_cast<void>(document.line(lines.size())), std::out_of_range);
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

TEST(OffsetList, KeepsOffsetsBeyondFourGibibytes) {
    if (sizeof(std::size_t) < 8)
        GTEST_SKIP() << "no such text fits into memory here";
    const std::size_t far = 0x1'2345'6789;
    OffsetList offsets(far);
    offsets.append(0xFFFF'FFFF);
    offsets.append(far);
    EXPECT_EQ(offsets[0], 0xFFFF'FFFFu);
    EXPECT_EQ(offsets[1], far);
}

TEST(CharacterWidth, FollowsTheUnicodeDataAtTheEdgesOfItsRanges) {
    const std::pair<char32_t, int> widths[] = {{U'A', 1}, {0x00AD, 1}, {0x02FF, 1}, {0x0300, 0}, {0x036F, 0},
        {0x0370, 1}, {0x0483, 0}, {0x10FF, 1}, {0x1100, 2}, {0x1160, 0}, {0x200B, 0}, {0x2010, 1},
        {0x302A, 0}, {0x3042, 2}, {0x4DC0, 1}, {0x9FFF, 2}, {0xD7A3, 2}, {0xD7A4, 1}, {0xFE0F, 0},
        {0xFEFF, 0}, {0xFF01, 2}, {0xFF61, 1}, {0x1F600, 2}, {0x20000, 2}, {0xE01EF, 0}, {0xE01F0, 1},
        {0x10FFFF, 1}};
    for (const auto& [codePoint, width] : widths)
        EXPECT_EQ(characterWidth(codePoint), width) << std::hex << static_cast<unsigned>(codePoint);
}

TEST(Utf8, TakesDamagedBytesByTheirMaximalSubpart) {
    const struct {
        std::string bytes;
        std::u32string expected;
    } cases[] = {
        {"\xC0\x80", U"\uFFFD\uFFFD"},                         // overlong
        {"\xE0\x9F\xBF", U"\uFFFD\uFFFD\uFFFD"},               // overlong
        {"\xED\xA0\x80", U"\uFFFD\uFFFD\uFFFD"},               // surrogate
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

TEST(Utf8, CarriesEveryCharacterAndReplacesSurrogatesWithoutPartner) {
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        std::string utf8;
        appendUtf8(utf8, codePoint);
        ASSERT_TRUE(isValidUtf8(utf8)) << std::hex << static_cast<unsigned>(codePoint);
        ASSERT_EQ(decodeUtf8(utf8, 0).codePoint, surrogate ? replacementCharacter : codePoint);
    }
    const auto fromUnits = [](const std::u16string& units, ByteOrder order) {
        std::string bytes;
        for (const char16_t unit : units) {
            bytes += char(order == ByteOrder::BigEndian ? unit >> 8 : unit & 0xFF);
            bytes += char(order == ByteOrder::BigEndian ? unit & 0xFF : unit >> 8);
        }
        return fromUtf16Bytes(bytes, order);
    };
    const std::u16string swapped = {u'a', 0xDC00, 0xD800, u'b', 0xD83D};
    for (const ByteOrder order : {ByteOrder::LittleEndian, ByteOrder::BigEndian}) {
        EXPECT_EQ(fromUnits(swapped, order), "a\uFFFD\uFFFDb\uFFFD");
        EXPECT_EQ(fromUnits(u"z\u00FC\u6E2C\U0001F600", order), "z\u00FC\u6E2C\U0001F600");
    }
}

class TextFile : public testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directories(folder_); }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path write(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
        return folder_ / name;
    }

    void expectRefusal(const std::filesystem::path& path, std::errc code) const {
        try {
            TextDocument::read(path);
            ADD_FAILURE() << path << " was read";
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), code) << error.what();
            EXPECT_THAT(error.what(), testing::HasSubstr(path.string()));
        }
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("genutil-text-" + std::to_string(::getpid()));
};

TEST_F(TextFile, IsReadWholeUnderAnyNameAlsoWithoutAKnownSize) {
    const std::string line(1 << 20, 'x');
    const TextDocument document = TextDocument::read(write("Łódź 測量 .&01", line));
    EXPECT_EQ(document.lineCount(), 1u);
    EXPECT_EQ(document.line(0), line);
    EXPECT_EQ(TextDocument::read(write("empty.log", "")).lineCount(), 1u);
    const std::filesystem::path sizeNotKnown = "/proc/self/smaps"; // says size 0 and gives more
    if (std::filesystem::exists(sizeNotKnown)) {
        EXPECT_GT(TextDocument::read(sizeNotKnown).lineCount(), 10u);
    }
}

TEST_F(TextFile, IsRefusedByNameAndRuleWhenItIsNoReadableFile) {
    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    expectRefusal(folder_, std::errc::is_a_directory);
    expectRefusal(folder_ / "missing.log", std::errc::no_such_file_or_directory);
    expectRefusal(folder_ / "pipe", std::errc::operation_not_supported);
    expectRefusal("/dev/zero", std::errc::operation_not_supported);
}

TEST_F(TextFile, IsRefusedWhenThisUserMayNotReadIt) {
    const std::filesystem::path closed = write("closed.log", "text");
    std::filesystem::permissions(closed, std::filesystem::perms::none);
    const fake::AnotherUser user;
    expectRefusal(closed, std::errc::permission_denied);
}

} // namespace
} // namespace genutil::text
