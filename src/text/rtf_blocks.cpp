#include "text/rtf_blocks.h"

#include "text/rtf_pictures.h"

#include <algorithm>
#include <utility>

namespace genutil::text::rtf {

namespace {

constexpr int usualCellWidth = 1440;

// One edge for each cell, rising; cells that the layout does not know are an inch wide while there is room.
std::vector<int> edgesOf(std::size_t cells, const std::vector<int>& edges, int left) {
    std::vector<int> rising;
    rising.reserve(cells);
    int last = 0;
    for (std::size_t i = 0; i < cells; ++i) {
        const int wanted = i < edges.size() ? edges[i] - left : last + usualCellWidth;
        last = std::max(std::min(wanted, longestLength), last + 1);
        rising.push_back(last);
    }
    return rising;
}

} // namespace

void BlockBuilder::addText(std::string_view text, const CharacterFormat& format) {
    if (text.empty())
        return;
    beforeContent();
    if (!runs_.empty() && !runs_.back().picture && runs_.back().format == format)
        runs_.back().text += text;
    else
        runs_.push_back({std::string(text), format, {}});
}

void BlockBuilder::addPicture(Picture picture, const CharacterFormat& format) {
    beforeContent();
    runs_.push_back({{}, format, std::move(picture)});
}

void BlockBuilder::endParagraph(ParagraphEnd end) {
    beforeContent();
    if (!end.inTable && rowIsOpen())
        finishRow(layout_);
    if (std::exchange(pageBreak_, false))
        end.format.pageBreakBefore = true;
    sectionStart_ = false;
    Paragraph paragraph{std::exchange(runs_, {}), std::move(end.mark), std::move(end.format)};
    if (end.inTable)
        cell_.push_back(std::move(paragraph));
    else
        blocks_.emplace_back(std::move(paragraph));
}

void BlockBuilder::breakPage() {
    pageBreak_ = true;
    sectionStart_ = false;
}

void BlockBuilder::breakSection() {
    pageBreak_ = true;
    sectionStart_ = true;
}

void BlockBuilder::setSectionBreak(bool newPage) {
    if (sectionStart_)
        pageBreak_ = newPage;
}

void BlockBuilder::startRowLayout() {
    if (!row_.empty() && cell_.empty() && runs_.empty() && !layoutBefore_)
        layoutBefore_ = std::move(layout_);
    layout_ = {};
}

void BlockBuilder::setRowLeft(int twips) {
    layout_.left = std::clamp(twips, -longestLength, longestLength);
}

void BlockBuilder::addCellEdge(int twips) {
    if (layout_.edges.size() < mostCells)
        layout_.edges.push_back(std::clamp(twips, -longestLength, longestLength));
}

void BlockBuilder::endCell(ParagraphEnd end) {
    end.inTable = true;
    endParagraph(std::move(end));
    if (row_.size() + 1 < mostCells)
        row_.push_back({std::exchange(cell_, {})});
}

void BlockBuilder::endRow() {
    layoutBefore_.reset();
    if (rowIsOpen())
        finishRow(layout_);
}

void BlockBuilder::beforeContent() {
    sectionStart_ = false;
    if (const auto layout = std::exchange(layoutBefore_, std::nullopt))
        finishRow(*layout);
}

void BlockBuilder::finishRow(const Layout& layout) {
    if (!cell_.empty())
        row_.push_back({std::exchange(cell_, {})});
    TableRow row{std::exchange(row_, {}), {}};
    row.rightEdges = edgesOf(row.cells.size(), layout.edges, layout.left);
    if (blocks_.empty() || !std::holds_alternative<Table>(blocks_.back()))
        blocks_.emplace_back(Table{});
    std::get<Table>(blocks_.back()).rows.push_back(std::move(row));
}

RichText BlockBuilder::finish() {
    endRow();
    return {std::move(blocks_)};
}

} // namespace genutil::text::rtf
