#pragma once

#include "text/rich_text.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace genutil::text::rtf {

// Writes one text.
class Writer {
public:
    explicit Writer(const RichText& text);
    std::string write();

private:
    using Levels = std::array<std::optional<ListEntry::Kind>, 9>;

    void collect(const Paragraph& paragraph);
    void collect(const CharacterFormat& format);
    void collect(const std::optional<Colour>& colour);

    void fontTable();
    void colourTable();
    void listTables();
    void listLevel(ListEntry::Kind kind, int level);

    void paragraph(const Paragraph& paragraph, bool inTable, std::string_view end);
    void format(const ParagraphFormat& format, bool inTable);
    void format(const CharacterFormat& format);
    void tabStops(const ParagraphFormat& format);
    void listEntry(const ListEntry& entry);
    void table(const Table& table);
    void picture(const Picture& picture);
    void characters(std::string_view utf8);
    void unicode(char32_t unit);

    void word(std::string_view word) { (out_ += '\\') += word; }
    void word(std::string_view name, int number) { (word(name), out_ += std::to_string(number)); }
    void wordUnlessZero(std::string_view name, int number);

    const RichText& text_;
    std::map<std::string, int, std::less<>>
        fonts_;                                 // to their numbers, from 1: no font 0 is the document's own
    std::map<std::array<int, 3>, int> colours_; // to their numbers, from 1: 0 is the window's own
    std::map<int, Levels> lists_;               // by number
    std::map<int, std::array<int, 9>> counts_;  // how far each list has counted
    std::optional<CharacterFormat> format_;     // as written last
    std::string out_;
};

// The mark of a list's entry, the count-th of its level: "•", "3.", "c.", "iii.".
std::string listMark(ListEntry::Kind kind, int count);

} // namespace genutil::text::rtf
