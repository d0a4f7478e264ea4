#include "text/bare_letters.h"

#include "text/letters.h"
#include "text/utf8.h"

#include <utility>

namespace genutil::text {
namespace {

// What stands for the characters of a range, one by one: the small letter that their canonical decomposition
// begins with, and for a stroke through a letter the letter without it.
struct Range {
    char32_t first;
    std::u16string_view bare;
};

constexpr Range ranges[] = {
    {0x00C0, u"aaaaaaæceeeeiiiidnooooo×ouuuuyþßaaaaaaæceeeeiiiidnooooo÷ouuuuyþyaaaaaaccccccccddddeee"
             u"eeeeeeegggggggghhhhiiiiiiiiiiĳĳjjkkĸllllllŀŀllnnnnnnŉŋŋooooooœœrrrrrrssssssssttttttuu"
             u"uuuuuuuuuuwwyyyzzzzzzsƀɓƃƃƅƅɔƈƈɖɗƌƌƍǝəɛƒƒɠɣƕɩɨƙƙƚƛɯɲƞɵooƣƣƥƥʀƨƨʃƪƫƭƭʈuuʊʋƴƴƶƶʒƹƹƺƻƽƽƾ"
             u"ƿǀǁǂǃǆǆǆǉǉǉǌǌǌaaiioouuuuuuuuuuǝaaaaææǥǥggkkooooʒʒjǳǳǳggƕƿnnaaææooaaaaeeeeiiiioooorrrr"
             u"uuuussttȝȝhhƞȡȣȣȥȥaaeeooooooooyyȴȵȶȷȸȹⱥȼȼƚⱦȿɀɂɂƀʉʌɇɇɉɉɋɋɍɍɏɏ"},
    {0x0386, u"α·εηι\u038Bο\u038Dυωιαβγδεζηθικλμνξοπρ\u03A2στυφχψωιυαεηιυαβγδεζηθικλμνξοπρσστυφχψωιυουω"},
    {0x0400, u"ееђгєѕііјљњћкиуџабвгдежзииклмнопрстуфхцчшщъыьэюяабвгдежзииклмнопрстуфхцчшщъыьэюяееђгє"
             u"ѕііјљњћкиуџѡѡѣѣѥѥѧѧѩѩѫѫѭѭѯѯѱѱѳѳѵѵѵѵѹѹѻѻѽѽѿѿҁҁ҂҃҄҅҆҇҈҉ҋҋҍҍҏҏґґғғҕҕҗҗҙҙққҝҝҟҟҡҡңңҥҥҧҧҩҩ"
             u"ҫҫҭҭүүұұҳҳҵҵҷҷҹҹһһҽҽҿҿӏжжӄӄӆӆӈӈӊӊӌӌӎӎӏааааӕӕееәәәәжжззӡӡииииооөөөөээууууууччӷӷыы"},
    {0x1E00, u"aabbbbbbccddddddddddeeeeeeeeeeffgghhhhhhhhhhiiiikkkkkkllllllllmmmmmmnnnnnnnnoooooooop"
             u"ppprrrrrrrrssssssssssttttttttuuuuuuuuuuvvvvwwwwwwwwwwxxxxyyzzzzzzhtwyẚsẜẝßẟaaaaaaaaaa"
             u"aaaaaaaaaaaaaaeeeeeeeeeeeeeeeeiiiioooooooooooooooooooooooouuuuuuuuuuuuuuyyyyyyyyỻỻỽỽỿ"
             u"ỿ"},
    {0x304B, u"かかききくくけけここささししすすせせそそたたちちっつつててととなにぬねのはははひひひふふふへへ"
             u"へほほほまみむめもゃやゅゆょよらりるれろゎわゐゑをんうゕゖ\u3097\u3098゙゚゛゜ゝゝゟ"
             u"゠ァアィイゥウェエォオカカキキククケケココササシシススセセソソタタチチッツツテテトトナニヌネノ"
             u"ハハハヒヒヒフフフヘヘヘホホホマミムメモャヤュユョヨラリルレロヮワヰヱヲンウ"
             u"ヵヶワヰヱヲ・ーヽヽ"},
};

// Those that are written with two letters where theirs is not at hand.
constexpr std::pair<char32_t, std::string_view> pairs[] = {
    {U'ß', "ss"}, {U'æ', "ae"}, {U'œ', "oe"}, {U'þ', "th"}, {U'ĳ', "ij"}};

constexpr bool isMark(char32_t c) {
    return (c >= 0x0300 && c <= 0x036F) || (c >= 0x1DC0 && c <= 0x1DFF) || (c >= 0x20D0 && c <= 0x20FF) ||
           c == 0x3099 || c == 0x309A || (c >= 0xFE20 && c <= 0xFE2F);
}

char32_t bare(char32_t codePoint) {
    for (const Range& range : ranges)
        if (codePoint >= range.first && codePoint - range.first < range.bare.size())
            return range.bare[codePoint - range.first];
    return foldCase(codePoint);
}

void append(std::string& out, char32_t codePoint) {
    const char32_t letter = bare(codePoint);
    for (const auto& [character, spelling] : pairs)
        if (letter == character) {
            out += spelling;
            return;
        }
    appendUtf8(out, letter);
}

// A Korean syllable in the parts that it may also be written with.
void appendSyllable(std::string& out, char32_t index) {
    constexpr char32_t vowels = 21, finals = 28;
    appendUtf8(out, 0x1100 + index / (vowels * finals));
    appendUtf8(out, 0x1161 + index / finals % vowels);
    if (index % finals != 0)
        appendUtf8(out, 0x11A7 + index % finals);
}

} // namespace

std::string bareLetters(std::string_view text) {
    constexpr char32_t firstSyllable = 0xAC00, lastSyllable = 0xD7A3;
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            out += static_cast<char>(foldCase(static_cast<unsigned char>(text[at++])));
            continue;
        }
        const DecodedCharacter next = decodeUtf8(text, at);
        if (!next.valid)
            out += text.substr(at, next.length);
        else if (next.codePoint >= firstSyllable && next.codePoint <= lastSyllable)
            appendSyllable(out, next.codePoint - firstSyllable);
        else if (!isMark(next.codePoint))
            append(out, next.codePoint);
        at += next.length;
    }
    return out;
}

} // namespace genutil::text
