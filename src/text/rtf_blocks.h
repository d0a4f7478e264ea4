#pragma once

#include "text/rich_text.h"

#include <optional>
#include <string_view>
#include <vector>

namespace genutil::text::rtf {

// Of one row. What else a file puts into the row's last cell stays in it.
inline constexpr std::size_t mostCells = 63;

// What is known about a paragraph when it ends.
struct ParagraphEnd {
    CharacterFormat mark;
    ParagraphFormat format;
    bool inTable = false;
};

// Puts paragraphs and table rows together from what a file says one after the other.
class BlockBuilder {
public:
    void addText(std::string_view text, const CharacterFormat& format);
    void addPicture(Picture picture, const CharacterFormat& format);
    bool paragraphIsEmpty() const { return runs_.empty(); }
    bool isEmpty() const { return runs_.empty() && blocks_.empty() && !rowIsOpen(); }

    void endParagraph(ParagraphEnd end);
    // A page starts at the next paragraph; a section that starts there can still do without.
    void breakPage();
    void breakSection();
    void setSectionBreak(bool newPage);

    // Forgets the layout of the rows before. Files may give it before the row's cells, behind them, or both.
    void startRowLayout();
    void setRowLeft(int twips);
    void addCellEdge(int twips);
    void endCell(ParagraphEnd end);
    // The paragraph that has begun is not part of the row.
    void endRow();

    RichText finish();

private:
    struct Layout {
        std::vector<int> edges;
        int left = 0;
    };

    bool rowIsOpen() const { return !row_.empty() || !cell_.empty(); }
    void beforeContent();
    void finishRow(const Layout& layout);

    std::vector<RichBlock> blocks_;
    std::vector<TableCell> row_;
    std::vector<Paragraph> cell_; // in the cell that has begun
    std::vector<Run> runs_;       // in the paragraph that has begun
    Layout layout_;
    std::optional<Layout>
        layoutBefore_; // of the row that has cells, while it is open whether layout_ is the next row's
    bool pageBreak_ = false;
    bool sectionStart_ = false;
};

} // namespace genutil::text::rtf
