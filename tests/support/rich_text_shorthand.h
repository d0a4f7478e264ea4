#pragma once

#include "text/rich_text.h"

#include <cstdio>
#include <string>
#include <vector>

// A rich text in one line, so that tests can say what they expect: usual values are left out. Characters:
// "plain{b 10pt f=Arial fg=ff0000:more}{png 3 100x50}". Paragraphs: "<centre li720 tab500r>...|...". Tables:
// "[1000 2000: a & b ; 500: c]".
namespace genutil::text::test {

class Shorthand {
public:
    static std::string of(const RichText& text) {
        Shorthand shorthand;
        for (const RichBlock& block : text.blocks) {
            if (&block != &text.blocks.front())
                shorthand.out_ += '|';
            if (const auto* paragraph = std::get_if<Paragraph>(&block))
                shorthand.add(*paragraph);
            else
                shorthand.add(std::get<Table>(block));
        }
        return shorthand.out_;
    }

private:
    using Words = std::vector<std::string>;

    static std::string joined(const Words& words) {
        std::string line;
        for (const std::string& word : words)
            line += (line.empty() ? "" : " ") + word;
        return line;
    }

    static std::string hex(const Colour& colour) {
        char text[7];
        std::snprintf(text, sizeof text, "%02x%02x%02x", colour.red, colour.green, colour.blue);
        return text;
    }

    static Words wordsOf(const CharacterFormat& format) {
        Words words;
        if (format.size != 12)
            words.push_back(
                std::to_string(int(format.size)) + (format.size > int(format.size) ? ".5pt" : "pt"));
        if (!format.font.empty())
            words.push_back("f=" + format.font);
        for (const auto& [on, word] : {std::pair(format.bold, "b"), std::pair(format.italic, "i"),
                 std::pair(format.underline, "u"), std::pair(format.strike, "s"),
                 std::pair(format.position == VerticalPosition::Superscript, "up"),
                 std::pair(format.position == VerticalPosition::Subscript, "down")})
            if (on)
                words.emplace_back(word);
        if (format.foreground)
            words.push_back("fg=" + hex(*format.foreground));
        if (format.background)
            words.push_back("bg=" + hex(*format.background));
        return words;
    }

    static Words wordsOf(const ParagraphFormat& format) {
        Words words;
        if (format.alignment != ParagraphAlignment::Left)
            words.emplace_back(format.alignment == ParagraphAlignment::Centre  ? "centre"
                               : format.alignment == ParagraphAlignment::Right ? "right"
                                                                               : "justified");
        for (const auto& [twips, word] : {std::pair(format.leftIndent, "li"),
                 std::pair(format.rightIndent, "ri"), std::pair(format.firstLineIndent, "fi"),
                 std::pair(format.spaceBefore, "sb"), std::pair(format.spaceAfter, "sa"),
                 std::pair(format.lineSpacing, format.lineMultiple ? "lines" : "line")})
            if (twips != 0)
                words.push_back(word + std::to_string(twips));
        for (const TabStop& tab : format.tabs)
            words.push_back("tab" + std::to_string(tab.position) + "lcrd"[int(tab.kind)]);
        if (format.pageBreakBefore)
            words.emplace_back("page");
        if (format.list)
            words.push_back("list" + std::to_string(format.list->list) + "." +
                            std::to_string(format.list->level) + "-1aAiI"[int(format.list->kind)]);
        return words;
    }

    void add(const Paragraph& paragraph) {
        if (const Words words = wordsOf(paragraph.format); !words.empty())
            out_ += "<" + joined(words) + ">";
        for (const Run& run : paragraph.runs) {
            Words words = wordsOf(run.format);
            if (run.picture) {
                words.insert(words.begin(),
                    {run.picture->kind == Picture::Kind::Png ? "png" : "jpeg",
                        std::to_string(run.picture->bytes.size()),
                        std::to_string(run.picture->width) + "x" + std::to_string(run.picture->height)});
                out_ += "{" + joined(words) + "}";
            } else {
                out_ += words.empty() ? run.text : "{" + joined(words) + ":" + run.text + "}";
            }
        }
    }

    void add(const Table& table) {
        out_ += '[';
        for (const TableRow& row : table.rows) {
            if (&row != &table.rows.front())
                out_ += "; ";
            Words edges;
            for (const int edge : row.rightEdges)
                edges.push_back(std::to_string(edge));
            out_ += joined(edges) + ": ";
            for (const TableCell& cell : row.cells) {
                if (&cell != &row.cells.front())
                    out_ += " & ";
                for (const Paragraph& paragraph : cell.paragraphs) {
                    if (&paragraph != &cell.paragraphs.front())
                        out_ += '|';
                    add(paragraph);
                }
            }
        }
        out_ += ']';
    }

    std::string out_;
};

} // namespace genutil::text::test
