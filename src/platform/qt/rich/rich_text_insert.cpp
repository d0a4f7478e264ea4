#include "platform/qt/rich/rich_text_convert.h"
#include "platform/qt/rich/rich_text_formats.h"
#include "platform/qt/rich/rich_text_picture.h"

#include <QTextCursor>
#include <QTextList>
#include <QTextTable>

#include <algorithm>
#include <climits>
#include <map>
#include <span>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

namespace genutil::richtext {
namespace {

// The toolkit visits all of a list's entries when one is added. A longer list goes on in another one, where
// entry 3 is numbered "1000+3.".
constexpr int mostEntries = 1000;
// The toolkit lays out a table as a whole. A longer one goes on in another one.
constexpr int mostCells = 2000;
// Up to which rows of unlike cells are shown as they are.
constexpr std::size_t mostUnlikeColumns = 60;
constexpr std::size_t mostUnlikeCells = 100'000;
constexpr int lowestTableEdge = 30; // twips

QString shownText(const std::string& text) {
    QString result = QString::fromStdString(text);
    for (QChar& each : result) {
        const char16_t unit = each.unicode();
        if ((unit < 0x20 && unit != u'\t') || unit == 0x7F || unit == QChar::ParagraphSeparator ||
            unit == 0xFDD0 || unit == 0xFDD1)
            each = QChar::ReplacementCharacter;
    }
    return result;
}

// The toolkit's rectangle for rows of any cells: its columns end where any cell does, and a cell takes as
// many as it is wide. Where that would take too long, or a row's edges do not rise, the cells simply stand in
// line.
struct TableGrid {
    explicit TableGrid(const text::Table& table) {
        std::size_t widest = 1;
        bool rises = true;
        for (const text::TableRow& row : table.rows) {
            widest = std::max(widest, row.cells.size());
            rises = rises && !row.cells.empty() && row.rightEdges.size() == row.cells.size() &&
                    row.rightEdges.front() >= lowestTableEdge &&
                    std::ranges::adjacent_find(row.rightEdges, std::ranges::greater_equal()) ==
                        row.rightEdges.end();
            edges.insert(edges.end(), row.rightEdges.begin(), row.rightEdges.end());
        }
        std::ranges::sort(edges);
        edges.erase(std::ranges::unique(edges).begin(), edges.end());
        const std::size_t all = edges.size() * table.rows.size();
        isExact = rises &&
                  (edges.size() == widest || (edges.size() <= mostUnlikeColumns && all <= mostUnlikeCells));
        if (!isExact)
            edges.assign(widest, 0);
    }

    // Twips; 0 where it is the toolkit's to choose.
    std::vector<int> widths() const {
        std::vector<int> result;
        if (isExact)
            for (int last = 0; const int edge : edges)
                result.push_back(edge - std::exchange(last, edge));
        return result;
    }

    int columns() const { return int(edges.size()); }
    int columnBehind(int edge) const {
        return int(std::ranges::lower_bound(edges, edge) - edges.begin()) + 1;
    }

    std::vector<int> edges;
    bool isExact = false;
};

class Writer {
public:
    Writer(QTextCursor& cursor, int firstList, double indentScale)
        : cursor_(cursor), firstList_(firstList), indentScale_(indentScale) {
        isFresh_ = cursor.block().length() <= 1;
    }

    void write(const text::RichText& text) {
        for (const text::RichBlock& block : text.blocks) {
            if (const auto* table = std::get_if<text::Table>(&block))
                writeTable(*table);
            else
                writeParagraph(std::get<text::Paragraph>(block));
        }
    }

private:
    struct List {
        QTextList* object = nullptr;
        int size = 0;
        int before = 0; // entries in lists that this one continues
    };

    void writeParagraph(const text::Paragraph& paragraph) {
        if (!std::exchange(continues_, false) || isFresh_)
            beginParagraph(paragraph);
        for (const text::Run& run : paragraph.runs) {
            QTextCharFormat format = toQt(run.format);
            if (run.picture) {
                setPicture(format, *run.picture);
                cursor_.insertText(QString(QChar::ObjectReplacementCharacter), format);
            } else {
                cursor_.insertText(shownText(run.text), format);
            }
        }
    }

    void beginParagraph(const text::Paragraph& paragraph) {
        QTextBlockFormat format = toQt(paragraph.format, indentScale_);
        List* list = paragraph.format.list ? &listOf(*paragraph.format.list) : nullptr;
        if (list && list->object)
            format.setObjectIndex(list->object->objectIndex());
        if (!std::exchange(isFresh_, false)) {
            cursor_.insertBlock(format, toQt(paragraph.end));
        } else {
            setFormats(format, paragraph.end);
        }
        if (list && !list->object)
            list->object = cursor_.createList(toQt(numbered(*paragraph.format.list), list->before));
        if (list && ++list->size >= mostEntries)
            *list = {.before = list->before + list->size};
    }

    void setFormats(const QTextBlockFormat& format, const text::CharacterFormat& end) {
        cursor_.setBlockFormat(format);
        // The mark before a cell's first paragraph is the cell's own, and that behind a table is the table's.
        const QChar before = cursor_.document()->characterAt(cursor_.block().position() - 1);
        if (before == QChar(0xFDD0) || before == QChar(0xFDD1))
            cursor_.mergeBlockCharFormat(toQtInCell(end));
        else
            cursor_.setBlockCharFormat(toQt(end));
    }

    text::ListEntry numbered(text::ListEntry entry) const {
        if (firstList_ > 0)
            entry.list = std::clamp(entry.list, 0, INT_MAX / 2) + firstList_;
        return entry;
    }

    // An entry of an outer level begins the numbers of the inner ones again.
    List& listOf(const text::ListEntry& entry) {
        const auto key = std::tuple(entry.list, entry.level, entry.kind);
        const auto inner = lists_.lower_bound({entry.list, entry.level + 1, text::ListEntry::Kind::Bullet});
        auto last = inner;
        while (last != lists_.end() && std::get<0>(last->first) == entry.list)
            ++last;
        lists_.erase(inner, last);
        return lists_[key];
    }

    void writeTable(const text::Table& table) {
        if (cursor_.currentTable()) {
            for (const text::TableRow& row : table.rows)
                for (const text::TableCell& cell : row.cells)
                    for (const text::Paragraph& paragraph : cell.paragraphs)
                        writeParagraph(paragraph);
            return;
        }
        continues_ = false;
        if (isFresh_)
            setFormats(fillerFormat(), {});
        const TableGrid grid(table);
        const auto step = std::size_t(std::max(1, mostCells / grid.columns()));
        for (std::size_t row = 0; row < table.rows.size(); row += step)
            writeRows(std::span(table.rows).subspan(row, std::min(step, table.rows.size() - row)), grid,
                row > 0, table.rows.size() <= step);
    }

    void writeRows(
        std::span<const text::TableRow> rows, const TableGrid& grid, bool continues, bool sharesBorders) {
        TableEdges edges;
        for (const text::TableRow& row : rows)
            edges.push_back(row.rightEdges);
        QTextTable* shown = cursor_.insertTable(int(rows.size()), grid.columns(),
            tableFormat(std::move(edges), grid.widths(), continues, sharesBorders));
        for (int row = 0; row < shown->rows(); ++row)
            writeRow(*shown, row, rows[std::size_t(row)], grid);
        cursor_ = shown->lastCursorPosition();
        cursor_.movePosition(QTextCursor::NextBlock);
        isFresh_ = true;
        if (cursor_.block().length() <= 1)
            setFormats(fillerFormat(), {});
    }

    void writeRow(QTextTable& shown, int row, const text::TableRow& cells, const TableGrid& grid) {
        int column = 0;
        for (std::size_t i = 0; i < cells.cells.size(); ++i) {
            const int next = grid.isExact ? grid.columnBehind(cells.rightEdges[i]) : column + 1;
            if (next - column > 1)
                shown.mergeCells(row, column, 1, next - column);
            cursor_ = shown.cellAt(row, column).firstCursorPosition();
            isFresh_ = true;
            for (const text::Paragraph& paragraph : cells.cells[i].paragraphs)
                writeParagraph(paragraph);
            column = next;
        }
    }

    QTextCursor& cursor_;
    int firstList_;
    double indentScale_;
    bool isFresh_;          // the paragraph that the cursor is in is empty, and the next one to write
    bool continues_ = true; // the first paragraph goes on from what stands before the cursor
    std::map<std::tuple<int, int, text::ListEntry::Kind>, List> lists_;
};

// A number that no list of the document has, nor any after it.
int freeListNumber(const QTextDocument& document) {
    int result = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        if (const auto entry = listEntry(block))
            result = std::max(result, entry->list < INT_MAX / 2 ? entry->list + 1 : 0);
    return result;
}

} // namespace

void insert(QTextCursor& cursor, const text::RichText& text, double indentScale) {
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    Writer(cursor, freeListNumber(*cursor.document()), indentScale).write(text);
    cursor.endEditBlock();
}

} // namespace genutil::richtext
