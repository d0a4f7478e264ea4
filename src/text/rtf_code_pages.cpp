#include "text/rtf_code_pages.h"

#include "text/utf8.h"

#include <algorithm>

namespace genutil::text::rtf {

namespace {

struct CharsetPage {
    int charset;
    int codePage;
};

// clang-format off
constexpr CharsetPage charsetPages[] = {
    {0, westernCodePage}, {2, signsCodePage}, {77, 10000}, {78, 10001}, {79, 10003}, {80, 10008}, {81, 10002},
    {88, 10029}, {89, 10007},
    {128, 932}, {129, 949}, {130, 1361}, {134, 936}, {136, 950},
    {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256}, {179, 1256}, {180, 1256}, {181, 1255},
    {186, 1257}, {204, 1251}, {222, 874}, {238, 1250}, {254, 437}, {255, 850},
};
// clang-format on

// What the letters of the font Symbol stand for, from A and from a.
constexpr std::u32string_view symbolCapitals = U"ΑΒΧΔΕΦΓΗΙϑΚΛΜΝΟΠΘΡΣΤΥςΩΞΨΖ";
constexpr std::u32string_view symbolLetters = U"αβχδεφγηιϕκλμνοπθρστυϖωξψζ";
static_assert(symbolCapitals.size() == 26 && symbolLetters.size() == 26);

struct Sign {
    unsigned char number;
    char32_t character;
};

// The font's other signs that Latin-1 has at another place or not at all.
constexpr Sign symbolSigns[] = {{0x2D, U'−'}, {0xA2, U'′'}, {0xA3, U'≤'}, {0xA4, U'⁄'}, {0xA5, U'∞'},
    {0xAB, U'↔'}, {0xAC, U'←'}, {0xAD, U'↑'}, {0xAE, U'→'}, {0xAF, U'↓'}, {0xB2, U'″'}, {0xB3, U'≥'},
    {0xB4, U'×'}, {0xB5, U'∝'}, {0xB6, U'∂'}, {0xB8, U'÷'}, {0xB9, U'≠'}, {0xBA, U'≡'}, {0xBB, U'≈'},
    {0xBC, U'…'}, {0xD1, U'∇'}, {0xD5, U'∏'}, {0xD6, U'√'}, {0xD7, U'⋅'}, {0xDE, U'⇒'}, {0xE5, U'∑'},
    {0xF2, U'∫'}};

constexpr int utf8CodePage = 65001;

struct NamedPage {
    int codePage;
    const char* name;
};

// Those that are not called after their number. The East Asian sets of one old system are those of its
// successor with a few signs more, which no converter knows.
constexpr NamedPage namedPages[] = {{437, "IBM437"}, {850, "IBM850"}, {10000, "macintosh"}, {10001, "CP932"},
    {10002, "CP950"}, {10003, "CP949"}, {10008, "CP936"}, {10029, "MAC-CENTRALEUROPE"}, {10079, "MAC-IS"}};

std::string nameOf(int codePage) {
    const auto* named = std::ranges::find(namedPages, codePage, &NamedPage::codePage);
    if (named != std::end(namedPages))
        return named->name;
    return (codePage >= 1250 && codePage <= 1258 ? "windows-" : "CP") + std::to_string(codePage);
}

} // namespace

int codePageOfCharset(int charset) {
    const auto found = std::ranges::find(charsetPages, charset, &CharsetPage::charset);
    return found == std::end(charsetPages) ? 0 : found->codePage;
}

LeadBytes leadBytesOf(int codePage) {
    switch (codePage) {
    case 932:
    case 10001:
        return LeadBytes::ShiftJis;
    case 936:
    case 949:
    case 950:
    case 1361:
    case 10002:
    case 10003:
    case 10008:
        return LeadBytes::Wide;
    default:
        return LeadBytes::None;
    }
}

bool isOfSigns(int codePage) {
    return codePage == symbolCodePage || codePage == signsCodePage;
}

char32_t signCharacter(unsigned char number, int codePage) {
    if (number == 0xB7)
        return U'\u2022';
    if (codePage != symbolCodePage)
        return number;
    if (number >= 'A' && number <= 'Z')
        return symbolCapitals[static_cast<std::size_t>(number - 'A')];
    if (number >= 'a' && number <= 'z')
        return symbolLetters[static_cast<std::size_t>(number - 'a')];
    const auto sign = std::ranges::find(symbolSigns, number, &Sign::number);
    return sign == std::end(symbolSigns) ? number : sign->character;
}

std::string decodeBytes(std::string_view bytes, int codePage, const CodePages& pages) {
    if (isOfSigns(codePage)) {
        std::string text;
        for (const char byte : bytes)
            appendUtf8(text, signCharacter(static_cast<unsigned char>(byte), codePage));
        return text;
    }
    if (codePage == utf8CodePage || std::ranges::all_of(bytes, [](char c) { return (c & 0x80) == 0; }))
        return std::string(bytes);
    if (auto decoded = pages.decode(nameOf(codePage), bytes))
        return std::move(decoded->text);
    const auto western = basicCodePages().decode(encodings::windows1252, bytes);
    return western ? western->text : std::string();
}

} // namespace genutil::text::rtf
