#include "text/rtf_writer.h"

#include "text/rtf.h"
#include "text/rtf_lists.h"
#include "text/utf8.h"

#include <algorithm>
#include <cmath>

namespace genutil::text::rtf {

namespace {

constexpr int firstListId = 1000;
constexpr int listIndent = 720; // twips for each level
constexpr int listHang = 360;

// Characters with a form of their own, which every reader knows.
struct OwnForm {
    char32_t character;
    std::string_view written;
};
constexpr OwnForm ownForms[] = {{U'\\', "\\\\"}, {U'{', "\\{"}, {U'}', "\\}"}, {U'\t', "\\tab "},
    {U'\u00A0', "\\~"}, {U'\u00AD', "\\-"}, {U'\u2011', "\\_"}, {U'\u2013', "\\endash "},
    {U'\u2014', "\\emdash "}, {U'\u2018', "\\lquote "}, {U'\u2019', "\\rquote "}, {U'\u201C', "\\ldblquote "},
    {U'\u201D', "\\rdblquote "}, {U'\u2022', "\\bullet "}, {U'\u2028', "\\line "}};

std::array<int, 3> partsOf(const Colour& colour) {
    return {colour.red, colour.green, colour.blue};
}

void appendHex(std::string& out, unsigned char byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    (out += digits[byte >> 4]) += digits[byte & 0xF];
}

} // namespace

Writer::Writer(const RichText& text) : text_(text) {
    forEachParagraph(text, [this](const Paragraph& paragraph) { collect(paragraph); });
    int number = 0;
    for (auto& font : fonts_)
        font.second = ++number;
    number = 0;
    for (auto& colour : colours_)
        colour.second = ++number;
}

void Writer::collect(const Paragraph& paragraph) {
    for (const Run& run : paragraph.runs)
        collect(run.format);
    collect(paragraph.end);
    if (const auto& entry = paragraph.format.list) {
        auto& kind =
            lists_[entry->list][static_cast<std::size_t>(std::clamp(entry->level, 0, listLevels - 1))];
        kind = kind.value_or(entry->kind);
    }
}

void Writer::collect(const CharacterFormat& format) {
    if (!format.font.empty())
        fonts_.try_emplace(format.font, 0);
    collect(format.foreground);
    collect(format.background);
}

void Writer::collect(const std::optional<Colour>& colour) {
    if (colour)
        colours_.try_emplace(partsOf(*colour), 0);
}

std::string Writer::write() {
    out_ = "{\\rtf1\\ansi\\ansicpg1252\\uc1\n";
    fontTable();
    colourTable();
    listTables();
    for (const RichBlock& block : text_.blocks) {
        if (const auto* one = std::get_if<Paragraph>(&block))
            paragraph(*one, false, "par");
        else
            table(std::get<Table>(block));
    }
    out_ += "}\n";
    return std::move(out_);
}

void Writer::fontTable() {
    out_ += "{\\fonttbl";
    for (const auto& [name, number] : fonts_) {
        out_ += '{';
        word("f", number);
        out_ += "\\fnil\\fcharset0 ";
        characters(name);
        out_ += ";}";
    }
    out_ += "}\n";
}

void Writer::colourTable() {
    out_ += "{\\colortbl;";
    for (const auto& [parts, number] : colours_) {
        word("red", parts[0]);
        word("green", parts[1]);
        word("blue", parts[2]);
        out_ += ';';
    }
    out_ += "}\n";
}

void Writer::listTables() {
    if (lists_.empty())
        return;
    out_ += "{\\*\\listtable\n";
    for (const auto& [number, levels] : lists_) {
        out_ += "{\\list";
        for (int level = 0; level < listLevels; ++level)
            listLevel(levels[static_cast<std::size_t>(level)].value_or(ListEntry::Kind::Bullet), level);
        word("listid", firstListId + number);
        out_ += "}\n";
    }
    out_ += "}\n{\\*\\listoverridetable\n";
    for (const auto& [number, levels] : lists_) {
        out_ += "{\\listoverride";
        word("listid", firstListId + number);
        word("listoverridecount", 0);
        word("ls", number);
        out_ += "}\n";
    }
    out_ += "}\n";
}

void Writer::listLevel(ListEntry::Kind kind, int level) {
    out_ += "{\\listlevel";
    word("levelnfc", numberFormatOf(kind));
    word("levelnfcn", numberFormatOf(kind));
    out_ += "\\leveljc0\\levelfollow0\\levelstartat1";
    if (kind == ListEntry::Kind::Bullet)
        out_ += "{\\leveltext\\'01\\u8226?;}{\\levelnumbers;}";
    else
        out_ += "{\\leveltext\\'02\\'0" + std::to_string(level) + ".;}{\\levelnumbers\\'01;}";
    word("fi", -listHang);
    word("li", listIndent * (level + 1));
    out_ += "}\n";
}

void Writer::paragraph(const Paragraph& paragraph, bool inTable, std::string_view end) {
    format(paragraph.format, inTable);
    for (const Run& run : paragraph.runs) {
        format(run.format);
        if (run.picture)
            picture(*run.picture);
        else
            characters(run.text);
    }
    format(paragraph.end);
    word(end);
    out_ += '\n';
}

void Writer::format(const ParagraphFormat& format, bool inTable) {
    word("pard");
    if (inTable)
        word("intbl");
    switch (format.alignment) {
    case ParagraphAlignment::Left:
        break;
    case ParagraphAlignment::Centre:
        word("qc");
        break;
    case ParagraphAlignment::Right:
        word("qr");
        break;
    case ParagraphAlignment::Justified:
        word("qj");
        break;
    }
    if (format.list || format.leftIndent != 0)
        word("li", format.leftIndent);
    if (format.list || format.firstLineIndent != 0)
        word("fi", format.firstLineIndent);
    wordUnlessZero("ri", format.rightIndent);
    wordUnlessZero("sb", format.spaceBefore);
    wordUnlessZero("sa", format.spaceAfter);
    wordUnlessZero("sl", format.lineSpacing);
    wordUnlessZero("slmult", format.lineMultiple ? 1 : 0);
    tabStops(format);
    if (format.pageBreakBefore)
        word("pagebb");
    if (format.list)
        listEntry(*format.list);
    else
        out_ += ' ';
}

void Writer::tabStops(const ParagraphFormat& format) {
    for (const TabStop& tab : format.tabs) {
        switch (tab.kind) {
        case TabStop::Kind::Left:
            break;
        case TabStop::Kind::Centre:
            word("tqc");
            break;
        case TabStop::Kind::Right:
            word("tqr");
            break;
        case TabStop::Kind::Decimal:
            word("tqdec");
            break;
        }
        word("tx", tab.position);
    }
}

void Writer::listEntry(const ListEntry& entry) {
    const auto level = static_cast<std::size_t>(std::clamp(entry.level, 0, listLevels - 1));
    auto& counts = counts_[entry.list];
    ++counts[level];
    std::fill(counts.begin() + static_cast<std::ptrdiff_t>(level) + 1, counts.end(), 0);
    word("ls", entry.list);
    word("ilvl", static_cast<int>(level));
    out_ += "{\\listtext ";
    characters(listMark(lists_[entry.list][level].value_or(entry.kind), counts[level]));
    out_ += "\\tab}";
}

void Writer::format(const CharacterFormat& format) {
    if (format_ == format)
        return;
    // Some readers hold raised and lowered characters back until they are told that there are no more.
    if (format_ && format_->position != VerticalPosition::Normal)
        word("nosupersub");
    format_ = format;
    word("plain");
    if (!format.font.empty())
        word("f", fonts_[format.font]);
    word("fs", static_cast<int>(std::lround(format.size * 2)));
    if (format.bold)
        word("b");
    if (format.italic)
        word("i");
    if (format.underline)
        word("ul");
    if (format.strike)
        word("strike");
    if (format.position != VerticalPosition::Normal)
        word(format.position == VerticalPosition::Superscript ? "super" : "sub");
    if (format.foreground)
        word("cf", colours_[partsOf(*format.foreground)]);
    if (format.background) {
        const int number = colours_[partsOf(*format.background)];
        word("highlight", number);
        word("chcbpat", number);
    }
    out_ += ' ';
}

void Writer::table(const Table& table) {
    for (const TableRow& row : table.rows) {
        out_ += "\\trowd\\trgaph108\\trleft0\n";
        for (const int edge : row.rightEdges) {
            for (const char* side : {"clbrdrt", "clbrdrl", "clbrdrb", "clbrdrr"}) {
                word(side);
                out_ += "\\brdrs\\brdrw10";
            }
            word("cellx", edge);
            out_ += '\n';
        }
        for (const TableCell& cell : row.cells)
            for (const Paragraph& one : cell.paragraphs)
                paragraph(one, true, &one == &cell.paragraphs.back() ? "cell" : "par");
        out_ += "\\row\n";
    }
}

void Writer::picture(const Picture& picture) {
    constexpr int twipsPerPixel = 15;
    constexpr std::size_t bytesPerLine = 64;
    out_ += picture.kind == Picture::Kind::Png ? "{\\pict\\pngblip" : "{\\pict\\jpegblip";
    wordUnlessZero("picw", picture.width / twipsPerPixel);
    wordUnlessZero("pich", picture.height / twipsPerPixel);
    wordUnlessZero("picwgoal", picture.width);
    wordUnlessZero("pichgoal", picture.height);
    for (std::size_t i = 0; i < picture.bytes.size(); ++i) {
        if (i % bytesPerLine == 0)
            out_ += '\n';
        appendHex(out_, static_cast<unsigned char>(picture.bytes[i]));
    }
    out_ += '}';
}

void Writer::characters(std::string_view utf8) {
    for (std::size_t i = 0; i < utf8.size();) {
        const DecodedCharacter character = decodeUtf8(utf8, i);
        i += character.length;
        const char32_t c = character.codePoint;
        const auto own = std::ranges::find(ownForms, c, &OwnForm::character);
        if (own != std::end(ownForms)) {
            out_ += own->written;
        } else if (c >= 0x20 && c < 0x7F) {
            out_ += static_cast<char>(c);
        } else if (c >= 0x10000) {
            unicode(0xD800 + ((c - 0x10000) >> 10));
            unicode(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else if (c >= 0x7F) {
            unicode(c);
        }
    }
}

void Writer::unicode(char32_t unit) {
    word("u", static_cast<int>(unit) - (unit >= 0x8000 ? 0x10000 : 0));
    if (unit >= 0xA0 && unit <= 0xFF) {
        out_ += "\\'"; // the same in windows-1252
        appendHex(out_, static_cast<unsigned char>(unit));
    } else {
        out_ += '?';
    }
}

void Writer::wordUnlessZero(std::string_view name, int number) {
    if (number != 0)
        word(name, number);
}

} // namespace genutil::text::rtf

namespace genutil::text {

std::string writeRtf(const RichText& text) {
    return rtf::Writer(text).write();
}

} // namespace genutil::text
