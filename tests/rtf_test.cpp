#include "support/rich_text_rules.h"
#include "support/rich_text_shorthand.h"
#include "text/rtf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <span>
#include <sstream>
#include <string>
#include <vector>

namespace genutil::text {
namespace {

using namespace std::string_literals;
using test::RichTextRules;
using test::Shorthand;

// Gives every byte its code page's name: a double-byte page takes two bytes where the first is above 7F.
class NamingPages : public CodePages {
public:
    std::optional<Decoded> decode(const std::string& name, std::string_view bytes) const override {
        if (name == "windows-1252" || name == "CP12345")
            return basicCodePages().decode(name, bytes);
        Decoded decoded{{}, true};
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const auto byte = static_cast<unsigned char>(bytes[i]);
            const bool wide = byte > 0x7F && name.starts_with("CP9") && i + 1 < bytes.size();
            char text[16];
            std::snprintf(text, sizeof text, wide ? "%02X%02X" : "%02X", byte, bytes[i + wide] & 0xFF);
            decoded.text += byte < 0x80 ? std::string(1, bytes[i]) : "(" + name + " " + text + ")";
            i += wide;
        }
        return decoded;
    }
    std::optional<Encoded> encode(const std::string&, std::string_view) const override {
        return std::nullopt;
    }
    std::string guess(std::string_view) const override { return {}; }
    std::string systemCodePage() const override { return encodings::windows1252; }
};

// What must hold for any bytes at all; the text that was read from them.
RichText readAndCheck(std::string_view bytes) {
    const RichText text = readRtf(bytes, NamingPages());
    EXPECT_EQ(RichTextRules::broken(text), "");
    const std::string written = writeRtf(text);
    EXPECT_TRUE(std::ranges::all_of(written, [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); }));
    EXPECT_EQ(readRtf(written), text) << written.substr(0, 2000);
    return text;
}

struct Snippet {
    std::string body; // inside the braces of a document
    std::string text; // in shorthand
};

const Snippet characterSnippets[] = {
    {"\\b a\\b0 b{\\i c}d\\b1 e\\plain f", "{b:a}b{i:c}d{b:e}f"},
    {"\\ul a\\ulnone b\\uldb c\\ul0 d\\ulw e", "{u:a}b{u:c}d{u:e}"},
    {"\\strike a\\strike0\\striked1 b\\striked0 c", "{s:ab}c"},
    {"\\super a\\sub b\\nosupersub c\\up6 d\\dn4 e\\up0 f", "{up:a}{down:b}c{up:d}{down:e}f"},
    {"\\fs21 a\\fs0 b\\fs9999 c\\fs d", "{10.5pt:a}{1pt:b}{400pt:c}d"},
    {"\\v hidden\\v0 shown{\\deleted gone}", "shown"},
    {"{\\fonttbl{\\f0 Arial;}{\\f7\\fnil Courier {\\*\\falt Mono}New;}}a\\f7 b\\f9 c\\plain d",
        "{f=Arial:a}{f=Courier New:b}c{f=Arial:d}"},
    {"\\deff3{\\fonttbl\\f2 One;\\f3  Two }a\\f2 b", "{f=Two:a}{f=One:b}"},
    {"{\\fonttbl{\\f0 "s + std::string(63, 'x') + "\\u233 ?y;}}a", "{f=" + std::string(63, 'x') + ":a}"},
    {"{\\colortbl;\\red255\\green128\\blue0;\\blue999;}\\cf1 a\\cf2 b\\cf0 c\\cf3 d\\cf-1 e",
        "{fg=ff8000:a}{fg=0000ff:b}cde"},
    {"{\\colortbl;\\red1;\\red2;}\\highlight1 a\\chcbpat2 b\\highlight0 c\\cb0 d",
        "{bg=010000:ab}{bg=020000:c}d"},
    {"a\\tab b\tc\\line d\\~e\\-f\\_g\\{\\}\\\\h", "a\tb\tc\u2028d\u00A0e\u00ADf\u2011g{}\\h"},
    {"\\lquote a\\rquote\\ldblquote b\\rdblquote\\endash\\emdash\\bullet", "‘a’“b”–—•"},
    {"a\r\nb\nc\x01\x7F\\'00\\'8d d", "abc d"},
    {"\\u233?\\u8364?\\u-10179?\\u-8704?x\\u-10179?y\\u-8704?", "é€😀x\uFFFDy\uFFFD"},
    {"\\u65535?\\u-4?\\u8233?\\u0?\\u128512?z", "\uFFFD\u2028😀z"},
    {"\\uc2\\u945\\'e1\\'62x\\uc0\\u946 y{\\uc3\\u947 abcd}\\u948 z", "αxβyγdδz"},
    {"\\u945\\bullet x\\u946{?}y\\u947{\\'3f}z\\u948{\\b w}", "αxβyγzδ{b:w}"},
    {"\\uc2\\u945{??}x{??}\\u946{?}", "αx??β?"},
    {"\\u945\\par\\u946\\u947?\\uc999999999\\u948 all{of}it", "α|βγδofit"},
    {"{\\upr{plain}{\\*\\ud{\\u1046?}x}}y", "Жxy"},
    {"{\\fonttbl{\\f0 A;}{\\f1\\fcharset2 Symbol;}{\\f2\\fcharset2 Other;}}\\f1 s\\'b7\\u-3983 ?\\f2 "
     "s\\'b7\\u-3983 ?",
        "{f=Symbol:σ•θ}{f=Other:s•q}"},
};

const Snippet paragraphSnippets[] = {
    {"a\\par b\\par", "a|b"}, {"a\\\r\nb\\\nc", "a|b|c"}, {"", ""}, {"\\par\\par", "|"},
    {"\\qc a\\par\\qr b\\par\\qj c\\par\\ql d\\par\\qc\\pard e", "<centre>a|<right>b|<justified>c|d|e"},
    {"\\li720\\ri-90000\\fi-360\\sb120\\sa-5 a\\par\\pard b", "<li720 ri-31680 fi-360 sb120>a|b"},
    {"\\sl-240 a\\par\\slmult1 b\\par\\sl360 c\\par\\sl240 d\\par\\slmult0 e",
        "<line-240>a|<line-240>b|<lines360>c|d|<line240>e"},
    {"\\tx2000\\tqr\\tx500\\tqdec\\tx1000\\tqc\\tx2000\\tx-5\\tx99999 a",
        "<tab500r tab1000d tab2000c tab31680l>a"},
    {"a\\page b\\par\\pard\\pagebb c\\par\\pard d\\page", "a|<page>b|<page>c|d"},
    {"\\sectd\\sbkpage a\\sect\\sectd\\sbknone b\\sect c\\sbknone d", "a|b|<page>cd"},
    {"{\\b\\qc a\\par}b", "<centre>{b:a}|b"},
    {"{\\header h}{\\footer f}{\\info{\\title t}}{\\stylesheet{\\s1\\b "
     "x;}}{\\*\\unknown{u}v}a{\\*\\generator g}b",
        "ab"},
    {"{\\field{\\*\\fldinst{HYPERLINK \"x\"}}{\\fldrslt{\\ul link}}} and {\\object{\\*\\objdata 00}{\\result "
     "r}}",
        "{u:link} and r"},
    {"\\s3\\unheardof12 a{\\unheardof b}", "ab"},
    {"\\header a\\*\\b b", "a{b:b}"}, // not in groups of their own
};

const std::string listTable = "{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}{"
                              "\\listlevel\\levelnfc4}{\\listlevel\\levelnfc255}"
                              "\\listid77}{\\list{\\listlevel\\levelnfc2}\\listid88}}"
                              "{\\*\\listoverridetable{\\listoverride\\listid77\\ls1}{\\listoverride\\ls2{"
                              "\\lfolevel{\\listlevel\\levelnfc1}}"
                              "\\listid88}{\\listoverride\\listid77\\ls3}}";

const Snippet listSnippets[] = {
    {listTable + "\\ls2{\\listtext i.\\tab}a\\par\\ls1 b\\par\\ilvl1 c\\par\\ilvl2 d\\par\\ilvl0\\ls3 "
                 "e\\par\\pard f",
        "<list1.0i>a|<list2.01>b|<list2.1a>c|d|<list2.01>e|f"},
    {listTable + "\\ls1 a\\par{\\*\\listtable{\\list{\\listlevel\\levelnfc2}\\listid77}}b",
        "<list1.01>a|<list1.01>b"},
    {listTable + "\\ls2\\ilvl99 a\\par\\ls9\\ilvl-1 b\\par\\ls0 c", "<list1.8i>a|<list2.0->b|c"},
    {"\\pard{\\pntext\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnindent0{\\pntxtb\\'b7}}a\\par b\\par\\pard c\\par"
     "{\\*\\pn\\pnlvlbody\\pndec{\\pntxta "
     ".}}d\\par{\\*\\pn\\pnlvl2\\pnlcltr}e\\par{\\*\\pn\\pnlvlcont}f\\par",
        "<list1.0->a|<list1.0->b|c|<list2.01>d|<list2.1a>e|f"},
    {"{\\*\\pn\\pnlvlbody\\pndec}a\\par{\\*\\pn\\pnlvlbody\\pnucrm}b\\par{\\*\\pn\\pnucltr}c",
        "<list1.01>a|<list2.0I>b|<list3.0A>c"},
};

const Snippet tableSnippets[] = {
    {"\\trowd\\trleft-100\\cellx900\\cellx1900\\pard\\intbl a\\cell b\\par c\\cell\\row\\intbl "
     "d\\cell\\row\\pard e",
        "[1000 2000: a & b|c; 1000: d]|e"},
    {"x\\par\\trowd\\cellx500\\cellx400\\intbl a\\cell b\\cell c\\cell\\row", "x|[500 501 1941: a & b & c]"},
    {"\\intbl a\\cell b\\cell\\row", "[1440 2880: a & b]"},
    {"\\trowd\\cellx500\\intbl a\\cell\\pard b\\par", "[500: a]|b"},
    {"\\trowd\\cellx500\\cellx900\\intbl a\\cell b", "[500 900: a & b]"},
    {"\\trowd\\cellx500\\intbl a\\cell\\trowd\\cellx700\\intbl b\\cell\\row", "[500: a; 700: b]"},
    {"\\trowd\\cellx500\\intbl a\\cell{\\trowd\\cellx700\\row}\\pard b", "[700: a]|b"},
    {"\\trowd\\cellx500\\cellx900\\intbl a\\cell b\\trowd\\cellx700\\cellx800\\cell\\row",
        "[700 800: a & b]"},
    {"\\trowd\\cellx90\\pard\\intbl\\itap2 n1\\nestcell n2\\nestcell{\\*\\nesttableprops\\trowd\\nestrow}"
     "{\\nonesttables x\\par}\\pard\\intbl o\\cell\\row",
        "[90: n1|n2|o]"},
    {"\\cell\\row\\row\\row", "[1440: ]"},
    {"\\pard\\intbl a\\cell\\row\\pard\\par\\intbl b\\cell\\row", "[1440: a]||[1440: b]"},
};

const Snippet pictureSnippets[] = {
    {"a{\\pict\\pngblip\\picwgoal300\\pichgoal200\\picscalex50 89 5\n04 e 4}b", "a{png 3 150x200}b"},
    {"{\\*\\shppict{\\pict{\\*\\picprop x}\\jpegblip\\bin4 }{\\\\ff}}{\\nonshppict{\\pict\\pngblip 00}}",
        "{jpeg 5 0x0}"},
    {"{\\pict\\pngblip 01{\\picw5}02}", "{png 2 0x0}"},
    {"{\\pict\\wmetafile8 0102}{\\pict\\pngblip}{\\v{\\pict\\pngblip 01}}", ""},
    {"\\b{\\pict\\pngblip 01}{\\pict\\pngblip\\picwgoal-5\\pichgoal2000000000\\picscaley999 02}x",
        "{png 1 0x0 b}{png 1 0x31680 b}{b:x}"},
    {"\\bin3 }}}a\\bin-5 b\\bin0 c\\bin d\\bin99999 e", "abcd"},
};

std::vector<Snippet> allSnippets() {
    std::vector<Snippet> all;
    for (const auto& some : {std::span<const Snippet>(characterSnippets),
             std::span<const Snippet>(paragraphSnippets), std::span<const Snippet>(listSnippets),
             std::span<const Snippet>(tableSnippets), std::span<const Snippet>(pictureSnippets)})
        all.insert(all.end(), some.begin(), some.end());
    return all;
}

TEST(Rtf, ReadsEveryFeatureAndWritesItBack) {
    for (const Snippet& snippet : allSnippets())
        EXPECT_EQ(Shorthand::of(readAndCheck("{\\rtf1\\ansi " + snippet.body + "}")), snippet.text)
            << snippet.body;
}

TEST(Rtf, DecodesBytesByTheCodePageOfTheirFont) {
    const std::string fonts = "{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset204 B;}{\\f2\\fcharset128 C;}"
                              "{\\f3\\fcharset1 D;}{\\f4\\fcharset0\\cpg1253 E;}{\\f5\\fcharset134 F;}"
                              "{\\f6\\fcharset77 \\'8aG;}{\\f7\\cpg12345 H;}{\\f8\\cpg65001 I;}}\\plain ";
    const Snippet samples[] = {
        {"\\'80\xB0", "{f=A:€°}"},
        {"\\f1 \\'e9\xE9", "{f=B:(windows-1251 E9)(windows-1251 E9)}"},
        {"\\f2\\'83A\\'83\\'5cx\\'83\\}", "{f=C:(CP932 8341)(CP932 835C)x(CP932 837D)}"},
        {"\\f2\x83\\\x83{\x83}x", "{f=C:(CP932 835C)(CP932 837B)(CP932 837D)x}"},
        {"\\f2\\'83\\'83\x83\\x", "{f=C:(CP932 8383)(CP932 835C)x}"},
        {"\\f2\\'83\x83{\\b x}", "{f=C:(CP932 8383)}{f=C b:x}"}, // a second byte that could be a first
        {"\\f2\xA6\\b x\\b0", "{f=C:(CP932 A6)}{f=C b:x}"},      // one byte wide
        {"\\f5\\'a6\\'a6\\f0\\'a6", "{f=F:(CP936 A6A6)}{f=A:¦}"},
        {"\\f3\\'e9", "{f=D:(windows-1250 E9)}"},
        {"\\f4\\'e9", "{f=E:(windows-1253 E9)}"},
        {"\\f6 a", "{f=(macintosh 8A)G:a}"},
        {"\\f7\\'e9", "{f=H:é}"}, // unknown
        {"\\f8\xC3\xA9\\'c3\\'a9\xC3", "{f=I:éé\uFFFD}"},
        {"\\f99\\'e9", "(windows-1250 E9)"},
        {"a\\'e", "{f=A:ae}"},
        {"\\'zz\\'", "{f=A:zz}"},
    };
    for (const Snippet& sample : samples)
        EXPECT_EQ(
            Shorthand::of(readAndCheck("{\\rtf1\\ansicpg1250" + fonts + sample.body + "}")), sample.text)
            << sample.body;
    for (const auto& [word, name] :
        {std::pair("\\mac", "macintosh"), std::pair("\\pc", "IBM437"), std::pair("\\pca", "IBM850"),
            std::pair("\\ansicpg874", "CP874"), std::pair("\\ansicpg1361", "CP1361")})
        EXPECT_EQ(Shorthand::of(readAndCheck("{\\rtf1"s + word + "\\'e9}")), "("s + name + " E9)");
    EXPECT_EQ(Shorthand::of(readAndCheck("{\\rtf1\\ansicpg0\\'e9}")), "é");
}

TEST(Rtf, KeepsWhatDamagedFilesSay) {
    const std::pair<std::string, std::string> files[] = {
        {"", ""},
        {"plain\r\nlines\tof \xE9\rtext\n", "plain|lines\tof é|text"},
        {"\xEF\xBB\xBF\xC3\xA9\n\n", "é|"},
        {" \r\n{\\rtf1 a}", "a"},
        {"{\\rtf", ""},
        {"{\\rtf1 a", "a"},
        {"{\\rtf1 a{\\b b", "a{b:b}"},
        {"{\\rtf1 a}}}{\\b more", "a"},
        {"{\\rtf1 a{{{b}c}", "abc"},
        {"{\\rtf1 a\\", "a"},
        {"{\\rtf1 a{\\fonttbl{\\f1 Ar", "a"},
        {"{\\rtf1{\\pict\\pngblip 0102a", "{png 2 0x0}"},
        {"{\\rtf1{\\pict\\pngblip\\bin9 abc", "{png 3 0x0}"},
        {"{\\rtf1{\\*\\pn\\pnlvlblt", "<list1.0->"},
        {"{\\rtf1{\\upr{a}{\\*\\ud b", "b"},
        {"{\\rtf1\\ls1{\\listtable\\listlevel\\levelnfc1\\listid1}a", "<list1.0->a"},
    };
    for (const auto& [bytes, text] : files)
        EXPECT_EQ(Shorthand::of(readAndCheck(bytes)), text) << bytes;
    EXPECT_TRUE(looksLikeRtf("\xEF\xBB\xBF\t{\\rtf1"));
    EXPECT_FALSE(looksLikeRtf("{\\rt"));
    EXPECT_FALSE(looksLikeRtf("x{\\rtf1"));
}

std::string repeated(std::size_t count, const std::string& piece) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += piece;
    return text;
}

std::string sampleReport() {
    std::ifstream file(GENUTIL_SAMPLES "/network_summary.rtf", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Rtf, HostileFilesTakeTimeAndMemoryByTheirSizeOnly) {
    std::string tabs = repeated(5'000, "\\tx1");
    for (int i = 1; i <= 70; ++i)
        tabs += "\\tx" + std::to_string(i);
    const std::string files[] = {
        repeated(100'000, "{"),
        repeated(100'000, "{\\b x") + repeated(100'000, "}"),
        repeated(10'000, "{\\upr{\\*\\ud ") + "x",
        repeated(10'000, "{\\fonttbl"),
        std::string(1'000'000, 'k'),
        "\\" + std::string(1'000'000, 'k') + std::string(1'000'000, '9'),
        "\\b-" + std::string(100'000, '9') + " x",
        repeated(10'000, "\\uc999999999\\u1{\\'"),
        repeated(5'000, "\\u1{x"),
        "{\\fonttbl{\\f0 " + std::string(100'000, 'n') + ";}}" + repeated(5'000, "\\b x\\b0 y"),
        tabs + repeated(5'000, "\\par"),
        "\\trowd" + repeated(5'000, "\\cellx9") + repeated(5'000, "\\cell") + repeated(5'000, "\\row\\cell"),
        repeated(5'000, "\\trowd\\cellx5"),
        repeated(5'000, "{\\pict\\pngblip\\bin99999999 "),
        repeated(2'000, "{\\*\\pn\\pnlvl99\\pnucrm}\\par\\pard\\par"),
        "{\\listtable" + repeated(5'000, "\\list\\listid1") + "}" + repeated(5'000, "\\ls1\\par"),
    };
    for (const std::string& body : files) {
        const auto start = std::chrono::steady_clock::now();
        readAndCheck("{\\rtf1" + body);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10)) << body.substr(0, 40);
    }
}

TEST(Rtf, AFileCutAnywhereIsStillAText) {
    std::string everything = "{\\rtf1\\ansi";
    for (const Snippet& snippet : allSnippets())
        everything += "{" + snippet.body + "\\par}\n";
    for (std::size_t size = 0; size < everything.size(); ++size)
        ASSERT_EQ(RichTextRules::broken(readRtf({everything.data(), size}, NamingPages())), "") << size;
    readAndCheck(everything);
    const std::string report = sampleReport();
    for (std::size_t size = 0; size < report.size(); size += 1999)
        readAndCheck({report.data(), size});
}

TEST(Rtf, TheSampleReportReadsAsItsWriterMeantIt) {
    const RichText report = readAndCheck(sampleReport());
    const std::string words = plainText(report);
    for (const char* line :
        {"Network summary\n", "\nCentral meridian\t11° 30′\u00A0E, scale factor 0.999950\n",
            "variance factor is s02 = 1.262.", "\nσE\n", "\n203020.5558\n",
            "\nreading 223° 30′ 37.4″ of set 2", "checked by J. Novotn(windows-1250 FD)",
            "\n4  Network sketch\n\uFFFC\n", "\n8 points stored in job"})
        EXPECT_THAT(words, testing::HasSubstr(line));
    for (const char* absent : {"Internal note", "HYPERLINK", "Default Paragraph", "\n1.\t"})
        EXPECT_THAT(words, testing::Not(testing::HasSubstr(absent)));
    const std::string shorthand = Shorthand::of(report);
    for (const char* part : {"<centre sb120 sa120>{16pt f=Arial b fg=203040:Network summary}",
             "<li284 tab4253r tab5954d tab7938c>", "<li720 fi-360 list1.01>", "|<sb120 sa80 page>",
             "7200x7800 10pt f=Arial}",
             "[800 3500 5000 6500 7700 8400 9100 9800: ", "; 800 3500 5000 6500 7700 9800: "})
        EXPECT_THAT(shorthand, testing::HasSubstr(part));
}

TEST(Rtf, WritesWhatOtherProgramsExpect) {
    const std::string roman = listTable + repeated(4, "\\ls2 x\\par") + repeated(2, "\\ls1\\ilvl0 y\\par") +
                              repeated(28, "\\ilvl1 z\\par") + "\\ilvl0 y\\par\\ilvl1 z\\par";
    const std::pair<std::string, std::vector<std::string>> files[] = {
        {"\\'b0\\u8242?{\\super 2}x", {"\\u176\\'b0\\u8242?", "\\super 2\\nosupersub\\plain\\fs24 x"}},
        {roman, {"{\\listtext iv.\\tab}x", "{\\listtext 2.\\tab}y", "{\\listtext z.\\tab}z",
                    "{\\listtext ab.\\tab}z",
                    "{\\listtext 3.\\tab}y\\par\n\\pard\\li0\\fi0\\ls2\\ilvl1{\\listtext a.\\tab}z"}},
        {"\\u128512?", {"\\u-10179?\\u-8704?"}},
        {"{\\colortbl;\\red9;}\\chcbpat1 a", {"\\highlight1\\chcbpat1 a"}},
        {"\\cell\\row", {"\\clbrdrt\\brdrs\\brdrw10", "\\cellx1440"}},
        {"{\\pict\\jpegblip\\picwgoal1500 fF0}", {"{\\pict\\jpegblip\\picw100\\picwgoal1500\nff}"}},
    };
    for (const auto& [body, parts] : files)
        for (const std::string& part : parts)
            EXPECT_THAT(writeRtf(readRtf("{\\rtf1" + body + "}")), testing::HasSubstr(part));
}

TEST(Rtf, TellsWhenMoreWasThereThanItKeeps) {
    const std::pair<const char*, bool> bodies[] = {{"a{\\info{\\title t}}{\\stylesheet{\\s1 x;}}", true},
        {"{\\pict\\pngblip 89}", true}, {"{\\header h}a", false}, {"a{\\v b}", false},
        {"a{\\*\\footnote n}", false}, {"a{\\*\\annotation n}", false}, {"a{\\annotation n}", false},
        {"{\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}", false}, {"{\\shp{\\*\\shpinst{\\shptxt t}}}", false},
        {"{\\pict\\wmetafile8 00}", false},
        {"{\\*\\shppict{\\pict\\pngblip 89}}{\\nonshppict{\\pict 0}}", true}};
    for (const auto& [body, whole] : bodies) {
        bool isWhole = !whole;
        readRtf("{\\rtf1 " + std::string(body) + "}", basicCodePages(), &isWhole);
        EXPECT_EQ(isWhole, whole) << body;
    }
}

TEST(Rtf, IsReadByAnotherProgramAsItsOriginalIs) {
    if (std::system("command -v unrtf >/dev/null") != 0)
        GTEST_SKIP() << "unrtf is not installed";
    const std::string folder = testing::TempDir();
    const auto words = [&](const std::string& file) {
        std::string text;
        FILE* const pipe = popen(("unrtf --text --nopict '" + file + "' 2>/dev/null").c_str(), "r");
        char block[4096];
        for (std::size_t got = 0; pipe && (got = fread(block, 1, sizeof block, pipe)) > 0;)
            text.append(block, got);
        if (pipe)
            pclose(pipe);
        // It has stand-ins of its own for some characters: the coordinates are compared.
        std::vector<std::string> plain;
        std::istringstream rest(text);
        for (std::string word; rest >> word;)
            if (word.size() >= 8 && word.find_first_not_of("0123456789.") == std::string::npos)
                plain.push_back(word);
        return plain;
    };
    std::ofstream(folder + "written.rtf") << writeRtf(readRtf(sampleReport()));
    const auto original = words(GENUTIL_SAMPLES "/network_summary.rtf");
    EXPECT_GT(original.size(), 20u);
    EXPECT_EQ(words(folder + "written.rtf"), original);
}

TEST(Rtf, GivesTextsMadeByHandBack) {
    CharacterFormat bold;
    bold.font = "Größe {x}";
    bold.size = 10.5;
    bold.bold = true;
    CharacterFormat coloured = bold;
    coloured.foreground = Colour{0, 0, 0};
    coloured.background = Colour{255, 254, 1};
    Paragraph paragraph{
        {{"a{b}\\c\t\u2028\u00A0", bold, {}}, {"", bold, Picture{Picture::Kind::Jpeg, "}\0\xFF"s, 1, 0}},
            {"b", bold, {}}, {"c ", coloured, {}}},
        coloured, {}};
    paragraph.format = {ParagraphAlignment::Right, -5, 6, -7, 8, 9, 480, true,
        {{1, TabStop::Kind::Decimal}, {2, {}}}, true, ListEntry{ListEntry::Kind::UpperRoman, 8, 1}};
    Paragraph empty;
    empty.end = bold;
    empty.end.position = VerticalPosition::Subscript;
    const Table table{{{{{{empty, paragraph}}, {{Paragraph{}}}}, {1, 31680}}, {{{{paragraph}}}, {77}}}};
    for (const RichText& text : {RichText{{Paragraph{}}}, RichText{{paragraph, empty}},
             RichText{{empty, empty}}, RichText{{table}}, RichText{{table, empty, table, paragraph}}}) {
        EXPECT_EQ(RichTextRules::broken(text), "");
        EXPECT_EQ(Shorthand::of(readRtf(writeRtf(text))), Shorthand::of(text));
        EXPECT_EQ(readRtf(writeRtf(text)), text);
    }
    EXPECT_EQ(
        plainText({{table, empty}}), "\na{b}\\c\t\u2028\u00A0\uFFFCbc \n\na{b}\\c\t\u2028\u00A0\uFFFCbc \n");
}

TEST(Rtf, WritesNothingThatATextMustNotHold) {
    const Paragraph paragraph{{{"a\x01\xFF\n b", {}, {}}}, {}, {}};
    EXPECT_EQ(Shorthand::of(readAndCheck(writeRtf({{paragraph}}))), "a\uFFFD b");
}

} // namespace
} // namespace genutil::text
