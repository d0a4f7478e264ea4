#pragma once

#include "text/rich_text.h"
#include "text/rtf_code_pages.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The tables at the head of a file that characters refer to by number.
namespace genutil::text::rtf {

// Bytes of a family name that are kept.
inline constexpr std::size_t longestFontName = 64;

class FontTable {
public:
    // The entry that the following calls describe.
    void select(int number);
    void setCodePage(int codePage) { described_.codePage = codePage; }
    int describedCodePage() const { return pageOrDocuments(described_.codePage); }
    // Clean text inside the table: names, each ended by a semicolon.
    void addText(std::string_view text);
    void finish();

    // 0 and below: windows-1252.
    void setDocumentCodePage(int codePage) { documentCodePage_ = codePage > 0 ? codePage : westernCodePage; }
    void setDefaultFont(int number) { defaultFont_ = number; }

    // Nothing for `number` means the default font. "" for a font that the table lacks.
    std::string nameOf(std::optional<int> number) const;
    int codePageOf(std::optional<int> number) const;

private:
    struct Font {
        std::string name;
        int codePage = 0; // 0: the document's
    };
    const Font* find(std::optional<int> number) const;
    int pageOrDocuments(int codePage) const { return codePage > 0 ? codePage : documentCodePage_; }

    std::map<int, Font> fonts_;
    std::optional<int> selected_;
    Font described_;
    int documentCodePage_ = westernCodePage;
    int defaultFont_ = 0;
};

class ColourTable {
public:
    // `part` is a member of Colour.
    void setPart(std::uint8_t Colour::*part, int value);
    // Text inside the table: semicolons end the entries.
    void addText(std::string_view text);
    // Nothing for an entry without parts and for one that the table lacks.
    std::optional<Colour> at(int number) const;

private:
    std::vector<std::optional<Colour>> colours_;
    std::optional<Colour> described_;
};

} // namespace genutil::text::rtf
