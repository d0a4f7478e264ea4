#pragma once

#include "text/rich_text.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <utility>

// What every rich text keeps, whatever it was read from.
namespace genutil::text::test {

inline bool holds(const std::string& text) {
    for (std::size_t i = 0; i < text.size();) {
        const DecodedCharacter c = decodeUtf8(text, i);
        const bool control =
            (c.codePoint < 0x20 && c.codePoint != U'\t') || (c.codePoint >= 0x7F && c.codePoint < 0xA0);
        if (!c.valid || control || c.codePoint == U'\u2029' || c.codePoint == U'\uFFFC')
            return false;
        i += c.length;
    }
    return true;
}

inline bool isLength(int twips) {
    return twips >= -31680 && twips <= 31680;
}

class RichTextRules {
public:
    // The first rule that the text breaks, "" for none.
    static std::string broken(const RichText& text) {
        RichTextRules rules;
        rules.check(text);
        return rules.broken_;
    }

private:
    void require(bool kept, const char* rule) {
        if (!kept && broken_.empty())
            broken_ = rule;
    }

    void check(const RichText& text) {
        require(!text.blocks.empty(), "there is a block");
        for (std::size_t i = 0; i < text.blocks.size(); ++i) {
            const auto* table = std::get_if<Table>(&text.blocks[i]);
            if (!table)
                continue;
            require(i == 0 || std::holds_alternative<Paragraph>(text.blocks[i - 1]), "tables do not touch");
            require(!table->rows.empty(), "a table has rows");
            for (const TableRow& row : table->rows) {
                require(!row.cells.empty() && row.cells.size() <= 63, "a row has 1 to 63 cells");
                require(row.rightEdges.size() == row.cells.size(), "every cell has an edge");
                require(
                    std::ranges::is_sorted(row.rightEdges, std::less_equal()) && row.rightEdges.front() > 0,
                    "edges rise");
                for (const TableCell& cell : row.cells)
                    require(!cell.paragraphs.empty(), "a cell has a paragraph");
            }
        }
        forEachParagraph(text, [this](const Paragraph& paragraph) { check(paragraph); });
    }

    void check(const Paragraph& paragraph) {
        check(paragraph.end);
        check(paragraph.format);
        const Run* last = nullptr;
        for (const Run& run : paragraph.runs) {
            check(run.format);
            require(run.text.empty() == run.picture.has_value(), "a run is characters or a picture");
            require(holds(run.text), "texts are clean UTF-8");
            require(!run.picture || (!run.picture->bytes.empty() && isLength(run.picture->width) &&
                                        isLength(run.picture->height) && run.picture->width >= 0 &&
                                        run.picture->height >= 0),
                "pictures have bytes and a size");
            require(!last || last->picture || run.picture || last->format != run.format, "neighbours differ");
            last = &run;
        }
    }

    void check(const CharacterFormat& format) {
        require(format.size >= 1 && format.size <= 400 && format.size * 2 == int(format.size * 2), "sizes");
        require(holds(format.font) && format.font.size() <= 64 && !format.font.starts_with(' ') &&
                    format.font.find_first_of(";\t") == std::string::npos && !format.font.ends_with(' '),
            "font names");
    }

    void check(const ParagraphFormat& format) {
        for (const int twips : {format.leftIndent, format.rightIndent, format.firstLineIndent,
                 format.spaceBefore, format.spaceAfter, format.lineSpacing})
            require(isLength(twips), "lengths");
        require(format.spaceBefore >= 0 && format.spaceAfter >= 0, "spaces are not negative");
        require(!format.lineMultiple || (format.lineSpacing > 0 && format.lineSpacing != 240), "multiples");
        require(format.tabs.size() <= 64, "at most 64 tabs");
        for (std::size_t i = 0; i < format.tabs.size(); ++i)
            require(format.tabs[i].position > (i ? format.tabs[i - 1].position : 0) &&
                        format.tabs[i].position <= 31680,
                "tabs rise");
        if (!format.list)
            return;
        const ListEntry& entry = *format.list;
        require(entry.level >= 0 && entry.level < 9, "list levels");
        require(entry.list >= 1 && entry.list <= lists_ + 1, "lists count from 1 as they appear");
        lists_ = std::max(lists_, entry.list);
        const auto kind = kinds_.try_emplace({entry.list, entry.level}, entry.kind).first->second;
        require(kind == entry.kind, "a list's level has one kind");
    }

    std::string broken_;
    int lists_ = 0;
    std::map<std::pair<int, int>, ListEntry::Kind> kinds_;
};

} // namespace genutil::text::test
