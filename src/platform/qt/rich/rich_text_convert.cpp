#include "platform/qt/rich/rich_text_convert.h"

#include "platform/qt/rich/rich_text_formats.h"
#include "platform/qt/rich/rich_text_picture.h"
#include "platform/qt/twip_scale.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

#include <algorithm>
#include <iterator>
#include <utility>

namespace genutil::richtext {
namespace {

constexpr double margin = 200;          // twips around the text: the indent of rich text
constexpr int defaultTabDistance = 720; // twips

text::Paragraph readParagraph(const QTextBlock& block) {
    text::Paragraph paragraph;
    paragraph.format = paragraphFormat(block);
    paragraph.end = characterFormat(block.charFormat());
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const text::CharacterFormat format = characterFormat(fragment.charFormat());
        if (const auto shown = picture(fragment.charFormat())) {
            for (qsizetype i = fragment.text().count(QChar::ObjectReplacementCharacter); i > 0; --i)
                paragraph.runs.push_back({{}, format, *shown});
            continue;
        }
        if (paragraph.runs.empty() || paragraph.runs.back().picture || paragraph.runs.back().format != format)
            paragraph.runs.push_back({{}, format, {}});
        paragraph.runs.back().text += fragment.text().toStdString();
    }
    return paragraph;
}

void readParagraphs(QTextFrame::iterator from, std::vector<text::Paragraph>& paragraphs) {
    for (; !from.atEnd(); ++from) {
        if (const QTextFrame* inner = from.currentFrame())
            readParagraphs(inner->begin(), paragraphs);
        else
            paragraphs.push_back(readParagraph(from.currentBlock()));
    }
}

text::TableCell readCell(const QTextTableCell& cell) {
    text::TableCell result;
    readParagraphs(cell.begin(), result.paragraphs);
    return result;
}

bool isEmpty(const QTextTableCell& cell) {
    return cell.firstPosition() == cell.lastPosition();
}

// The cells behind those of the row only fill the rectangle, unless the user has written into one.
text::TableRow readRow(const QTextTable& table, int row, const std::vector<int>& edges) {
    text::TableRow result;
    int last = 0;
    for (int column = 0; column < table.columns();) {
        const QTextTableCell cell = table.cellAt(row, column);
        const std::size_t index = result.cells.size();
        if (index < edges.size() || !isEmpty(cell)) {
            last = index < edges.size() ? edges[index] : last + 1440;
            result.cells.push_back(readCell(cell));
            result.rightEdges.push_back(last);
        }
        column += std::max(1, cell.columnSpan());
    }
    return result;
}

text::Table readTable(const QTextTable& table) {
    const TableEdges& edges = tableEdges(table.format());
    text::Table result;
    for (int row = 0; row < table.rows(); ++row) {
        const bool known = std::size_t(row) < edges.size();
        result.rows.push_back(readRow(table, row, known ? edges[std::size_t(row)] : std::vector<int>{1440}));
    }
    return result;
}

bool isEmptyFiller(const QTextBlock& block) {
    return block.length() <= 1 && isFiller(block.blockFormat());
}

} // namespace

RichDocument::RichDocument() {
    setDocumentMargin(margin / TwipScale::ofScreen().twipsPerPixel());
    QTextOption option = defaultTextOption();
    option.setTabStopDistance(defaultTabDistance / TwipScale::ofScreen().twipsPerPixel());
    setDefaultTextOption(option);
}

void RichDocument::beShownOn(QPaintDevice* device) {
    documentLayout()->registerHandler(pictureObject, new PictureObjects(documentLayout()));
    documentLayout()->setPaintDevice(device);
}

QVariant RichDocument::loadResource(int, const QUrl&) {
    return {};
}

void fill(QTextDocument& document, const text::RichText& text, double indentScale) {
    document.setUndoRedoEnabled(false);
    document.clear();
    QTextCursor cursor(&document);
    insert(cursor, text, indentScale);
    document.setUndoRedoEnabled(true);
    document.setModified(false);
}

void scaleIndents(QTextDocument& document, double indentScale) {
    document.setUndoRedoEnabled(false);
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        if (hasIndents(block.blockFormat())) {
            cursor.setPosition(block.position());
            cursor.mergeBlockFormat(toQt(paragraphFormat(block), indentScale));
        }
    cursor.endEditBlock();
    document.setUndoRedoEnabled(true);
}

text::RichText read(const QTextDocument& document) {
    text::RichText result;
    std::vector<QTextBlock> between; // since the last table
    bool behindTable = false;
    const auto takeParagraphs = [&](bool beforeTable) {
        if (between.size() != 1 || !isEmptyFiller(between.front()) || !(behindTable || beforeTable))
            for (const QTextBlock& block : between)
                result.blocks.emplace_back(readParagraph(block));
        between.clear();
    };
    for (auto it = document.rootFrame()->begin(); !it.atEnd(); ++it) {
        if (const auto* table = dynamic_cast<const QTextTable*>(it.currentFrame())) {
            const std::size_t before = result.blocks.size();
            takeParagraphs(true);
            text::Table read = readTable(*table);
            if (behindTable && result.blocks.size() == before && continuesTable(table->format()))
                std::ranges::move(
                    read.rows, std::back_inserter(std::get<text::Table>(result.blocks.back()).rows));
            else
                result.blocks.emplace_back(std::move(read));
            behindTable = true;
        } else if (it.currentBlock().isValid()) {
            between.push_back(it.currentBlock());
        }
    }
    takeParagraphs(false);
    return result;
}

std::string words(const QTextDocument& document) {
    std::string result;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block != document.begin())
            result += '\n';
        result += block.text().toUtf8().toStdString();
    }
    return result;
}

int positionOf(const QTextDocument& document, text::TextPosition place) {
    const int count = document.blockCount();
    if (place.line >= std::size_t(count))
        return document.lastBlock().position() + document.lastBlock().length() - 1;
    const QTextBlock block = document.findBlockByNumber(int(place.line));
    const QByteArray text = block.text().toUtf8();
    qsizetype bytes = qsizetype(std::min(place.byte, std::size_t(text.size())));
    while (bytes > 0 && bytes < text.size() && (text[bytes] & 0xC0) == 0x80)
        --bytes; // to the start of the character
    return block.position() + int(QString::fromUtf8(text.first(bytes)).size());
}

text::TextPosition placeOf(const QTextDocument& document, int position) {
    const QTextBlock block = document.findBlock(position);
    if (!block.isValid())
        return {};
    const QString text = block.text();
    const qsizetype units = std::clamp<qsizetype>(position - block.position(), 0, text.size());
    return {std::size_t(block.blockNumber()), std::size_t(QStringView(text).first(units).toUtf8().size())};
}

bool keepFiller(QTextDocument& document, int position) {
    const QTextBlock block = document.findBlock(position);
    if (!block.isValid() || !isFiller(block.blockFormat()) || isEmptyFiller(block))
        return false;
    QTextCursor cursor(block);
    cursor.joinPreviousEditBlock();
    cursor.setBlockFormat(toQt(text::ParagraphFormat(), 1));
    cursor.endEditBlock();
    return true;
}

} // namespace genutil::richtext
