#include "platform/system/system_files.h"
#include "text/detect_encoding.h"
#include "text/rtf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace genutil {
namespace {

class CodePages : public testing::Test {
protected:
    std::unique_ptr<FileSystem> files = makeSystemFiles();
    const text::CodePages& pages = files->codePages();
};

TEST_F(CodePages, DecodingIsExactUnlessEncodingAgainGivesOtherBytes) {
    const std::string bad = "\xEF\xBF\xBD";
    struct Case {
        std::string name;
        std::string bytes;
        std::string text;
        bool exact;
    };
    for (const Case& each : {
             Case{"KOI8-R", "\xF4\xCF\xDE\xCB\xC1 1\r\n", "Точка 1\r\n", true},
             Case{"windows-1251", "A\x98\xC0", "A" + bad + "А", false},
             Case{"Windows-1252", "12\xB0\x81", "12°\xC2\x81", true},
             Case{"iso-8859-2", "\xB1", "ą", true},
             Case{"Shift_JIS", "\x93\xFA\x96\x7B", "日本", true},
             Case{"Shift_JIS", "\x93\xFA\x96", "日" + bad, false},
             Case{"GB18030", "\xB2\xE2\xC1\xBF", "测量", true},
             Case{"Big5-HKSCS", "\x88\x66", "Ê", true},
             Case{"UTF-8", "A\xFF\xC3\xA4", "A" + bad + "ä", false},
             Case{"KOI8-R", "", "", true},
         }) {
        const auto decoded = pages.decode(each.name, each.bytes);
        ASSERT_TRUE(decoded) << each.name;
        EXPECT_EQ(decoded->text, each.text) << each.name;
        EXPECT_EQ(decoded->exact, each.exact) << each.name;
        if (each.exact) {
            const auto again = pages.encode(each.name, each.text);
            EXPECT_EQ(again->bytes, each.bytes) << each.name;
            EXPECT_FALSE(again->refusedAt) << each.name;
        }
    }
}

TEST_F(CodePages, EncodingRefusesTheFirstCharacterThatTheSetLacksOrWouldChange) {
    struct Case {
        std::string name;
        std::string text;
        std::string bytes;
        std::size_t refusedAt;
    };
    for (const Case& each : {
             Case{"KOI8-R", "А1 ä", "\xE1\x31 ", 4},
             Case{"iso-8859-1", "10 €", "10 ", 3},
             Case{"iso-8859-1", "a\xF3\xA0\x81\x81z", "a", 1}, // a tag, which converters drop without a word
             Case{"Shift_JIS", "日\xFF", "\x93\xFA", 3},
         }) {
        const auto encoded = pages.encode(each.name, each.text);
        ASSERT_TRUE(encoded) << each.name;
        EXPECT_EQ(encoded->bytes, each.bytes) << each.name;
        EXPECT_EQ(encoded->refusedAt, each.refusedAt) << each.name;
    }
}

TEST_F(CodePages, ReadRichTextOfEveryFontsCharacterSet) {
    const text::RichText rich =
        text::readRtf("{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 A;}{\\f1\\fcharset204 B;}"
                      "{\\f2\\fcharset134 C;}{\\f3\\fcharset161 D;}{\\f4\\fcharset130 E;}}"
                      "\\f0\\'91\\'aa\\'97\\'ca\\f1\\'c6\\f2\\'b2\\'e2\\f3\\'f9\\f4\\'88a}",
            pages);
    EXPECT_EQ(text::plainText(rich), "測量Ж测ω가");
}

TEST_F(CodePages, ReadRichTextOfTheCodePagesOfOneMaker) {
    // The marks stand for the signs of four old East Asian sets and one European one.
    const std::pair<int, const char*> cases[] = {{10001, "\\'91\\'aa\\'97\\'ca"},
        {10002, "\\'b4\\'fa\\'b6\\'71"}, {10003, "\\'f6\\'b4\\'d5\\'e1"}, {10008, "\\'9c\\'79\\'c1\\'bf"},
        {10029, "\\'e4\\'ec"}};
    const char* const texts[] = {"測量", "測量", "測量", "測量", "šž"};
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(text::plainText(text::readRtf(
                      "{\\rtf1\\ansi\\ansicpg" + std::to_string(cases[i].first) + " " + cases[i].second + "}",
                      pages)),
            texts[i])
            << cases[i].first;
}

// Each text has a sign that Windows has and the standard's set of the same letters lacks.
TEST_F(CodePages, OfWindowsAreToldFromTheirTwins) {
    struct Case {
        const char* name;
        const char* text;
    };
    for (const auto& [name, text] : {
             Case{"windows-1250",
                 "Výsledky vyrovnání sítě: střední chyba bodu, šířka, žádné odlehlé měření, zeměměřič\n"},
             Case{"windows-1250", "Wyniki wyrównania sieci: błąd średni położenia punktu, ściana, źródło, "
                                  "żaden świadek, część błędów, koń\n"},
             Case{"windows-1253",
                 "Αποτελέσματα της συνόρθωσης δικτύου: “μέσο σφάλμα” του σημείου και της γωνίας\n"},
             Case{"windows-1254",
                 "Ağ dengelemesinin sonuçları: “noktanın ortalama hatası” için ölçü bulunmadı, işçi\n"},
             Case{"windows-1257",
                 "Tīkla izlīdzināšanas rezultāti: “punkta vidējā kļūda”, žurnāls, ķēde un šķērsgriezums\n"},
         }) {
        std::string all;
        for (int i = 0; i < 20; ++i)
            all += text;
        const std::string bytes = pages.encode(name, all)->bytes;
        const text::DetectedText detected = text::detectAndDecode(bytes, pages);
        EXPECT_STRCASEEQ(detected.encoding.c_str(), name) << "uchardet: " << pages.guess(bytes);
        EXPECT_TRUE(detected.decoded.text == all) << name;
    }
}

TEST_F(CodePages, KnowOnlyPlainNames) {
    using namespace std::string_literals;
    for (const auto& name :
        {""s, "KOI9-R"s, "KOI8-R//TRANSLIT"s, "KOI8-R//IGNORE"s, "KOI8-R\0x"s, "KOI8 R"s}) {
        EXPECT_FALSE(pages.decode(name, "a")) << name;
        EXPECT_FALSE(pages.encode(name, "a")) << name;
    }
}

TEST_F(CodePages, GuessFromWhatTheBytesLookLike) {
    const auto repeated = [](const std::string& text) {
        std::string all;
        for (int i = 0; i < 50; ++i)
            all += text;
        return all;
    };
    const std::string russian = "Результаты уравнивания сети: средняя квадратическая погрешность пункта.\r\n";
    const std::string japanese = "測量の結果: 基準点の座標と誤差楕円。\r\n";
    for (const auto& [name, text] : {std::pair("windows-1251", russian), std::pair("KOI8-R", russian),
             std::pair("Shift_JIS", japanese), std::pair("EUC-JP", japanese)}) {
        const std::string guess = pages.guess(pages.encode(name, repeated(text))->bytes);
        EXPECT_STRCASEEQ(guess.c_str(), name);
    }
    for (const std::string escaped : {"plain text", "", "\x1B$B@.\x1B(B \x1B$B@.\x1B(B", "~{<:Ky~}"})
        EXPECT_EQ(pages.guess(escaped), "");
}

TEST_F(CodePages, ALocaleWithoutACodePageOfItsOwnMeansWindows1252) {
    for (const char* locale : {"C", "C.UTF-8", "no such locale"}) {
        ::setenv("LC_ALL", locale, 1);
        EXPECT_EQ(pages.systemCodePage(), "windows-1252") << locale;
    }
    ::unsetenv("LC_ALL");
}

} // namespace
} // namespace genutil
