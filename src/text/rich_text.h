#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

// A rich text as pure data. Lengths are twips (1/1440 inch), font sizes points, texts UTF-8.
namespace genutil::text {

struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    friend bool operator==(const Colour&, const Colour&) = default;
};

enum class VerticalPosition { Normal, Superscript, Subscript };

struct CharacterFormat {
    std::string font; // family; "" is the document's
    double size = 12; // points, in halves
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    VerticalPosition position = VerticalPosition::Normal;
    std::optional<Colour> foreground; // nothing: the window's own
    std::optional<Colour> background;
    friend bool operator==(const CharacterFormat&, const CharacterFormat&) = default;
};

struct Picture {
    enum class Kind { Png, Jpeg };
    Kind kind = Kind::Png;
    std::string bytes; // the file of that kind
    int width = 0;     // as shown; 0: the picture's own
    int height = 0;
    friend bool operator==(const Picture&, const Picture&) = default;
};

// Characters of one format, or one picture. In the text a tab is "\t" and a line break inside a paragraph is
// U+2028; there are no other control characters.
struct Run {
    std::string text;
    CharacterFormat format;
    std::optional<Picture> picture; // then `text` is empty
    friend bool operator==(const Run&, const Run&) = default;
};

enum class ParagraphAlignment { Left, Centre, Right, Justified };

struct TabStop {
    enum class Kind { Left, Centre, Right, Decimal };
    int position = 0;
    Kind kind = Kind::Left;
    friend bool operator==(const TabStop&, const TabStop&) = default;
};

struct ListEntry {
    enum class Kind { Bullet, Decimal, LowerLetter, UpperLetter, LowerRoman, UpperRoman };
    Kind kind = Kind::Bullet;
    int level = 0; // 0 is the outermost, 8 the innermost
    // Paragraphs with the same number are counted on together. Lists count from 1 in the order of their first
    // paragraphs, and all paragraphs of one list and level are of one kind.
    int list = 0;
    friend bool operator==(const ListEntry&, const ListEntry&) = default;
};

struct ParagraphFormat {
    ParagraphAlignment alignment = ParagraphAlignment::Left;
    int leftIndent = 0;
    int rightIndent = 0;
    int firstLineIndent = 0; // beyond leftIndent; negative hangs
    int spaceBefore = 0;
    int spaceAfter = 0;
    // 0: single. Positive: at least so many twips. Negative: exactly so many. See lineMultiple.
    int lineSpacing = 0;
    // lineSpacing, which is then positive and not 240, counts in 240ths of a single line instead of twips.
    bool lineMultiple = false;
    std::vector<TabStop> tabs; // rising positions
    bool pageBreakBefore = false;
    std::optional<ListEntry> list;
    friend bool operator==(const ParagraphFormat&, const ParagraphFormat&) = default;
};

struct Paragraph {
    std::vector<Run> runs; // neighbours that are both characters differ in format; none is empty
    CharacterFormat end;   // of the paragraph's end mark: what typing in an empty paragraph gets
    ParagraphFormat format;
    friend bool operator==(const Paragraph&, const Paragraph&) = default;
};

struct TableCell {
    std::vector<Paragraph> paragraphs; // at least one
    friend bool operator==(const TableCell&, const TableCell&) = default;
};

struct TableRow {
    std::vector<TableCell> cells; // at least one
    std::vector<int> rightEdges;  // of each cell, rising, from the table's left edge
    friend bool operator==(const TableRow&, const TableRow&) = default;
};

// Tables do not nest: a table in a cell is read as the cell's paragraphs. Between two tables stands a
// paragraph.
struct Table {
    std::vector<TableRow> rows; // at least one
    friend bool operator==(const Table&, const Table&) = default;
};

using RichBlock = std::variant<Paragraph, Table>;

struct RichText {
    std::vector<RichBlock> blocks; // an empty text has one empty paragraph
    friend bool operator==(const RichText&, const RichText&) = default;
};

// In document order, those of tables row by row and cell by cell.
template<typename Function>
void forEachParagraph(const RichText& text, Function function) {
    for (const RichBlock& block : text.blocks) {
        if (const auto* paragraph = std::get_if<Paragraph>(&block)) {
            function(*paragraph);
            continue;
        }
        for (const TableRow& row : std::get<Table>(block).rows)
            for (const TableCell& cell : row.cells)
                for (const Paragraph& paragraph : cell.paragraphs)
                    function(paragraph);
    }
}

// The words alone: a line for each paragraph, tables cell by cell; pictures are U+FFFC, inner line breaks
// U+2028. Line feeds stand between the lines, none behind the last.
std::string plainText(const RichText& text);

} // namespace genutil::text
