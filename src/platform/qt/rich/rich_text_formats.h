#pragma once

#include "text/rich_text.h"

#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextTableFormat>

#include <optional>
#include <vector>

// Formats of a rich text as formats of the toolkit, and back. What the toolkit cannot hold exactly, or shows
// in another way (lengths within bounds, fonts by substitutes), stands beside it in properties of our own, so
// that reading gives back what was put in.
namespace genutil::richtext {

QTextCharFormat toQt(const text::CharacterFormat& format);
text::CharacterFormat characterFormat(const QTextCharFormat& format);

// The format of a paragraph's end mark where it is also the format of a table's cell, which must not be
// painted in the mark's background.
QTextCharFormat toQtInCell(const text::CharacterFormat& format);

// Without the list, which is an object of the document. The layout's device scales all but the indents on the
// screen: `indentScale` does that.
QTextBlockFormat toQt(const text::ParagraphFormat& format, double indentScale);
text::ParagraphFormat paragraphFormat(const QTextBlock& block);
bool hasIndents(const QTextBlockFormat& format);
// What the second half of a paragraph gets when the user parts it: the same, but it begins no page.
QTextBlockFormat afterBreak(const QTextBlock& block, double indentScale);

// `before`: how many entries of it other lists of the document have.
QTextListFormat toQt(const text::ListEntry& entry, int before);
// Nothing for a paragraph in no list.
std::optional<text::ListEntry> listEntry(const QTextBlock& block);

// A document has paragraphs around each table, whether the text has them or not. Those that only the document
// has are marked, and hardly higher than a line.
QTextBlockFormat fillerFormat();
bool isFiller(const QTextBlockFormat& format);

// The right edges of a table's cells, row by row; not those of cells that the user has filled beyond them.
using TableEdges = std::vector<std::vector<int>>;
// `columns`: widths of the toolkit's columns, twips. A long table is several of the document's, of which all
// but the first continue it.
QTextTableFormat tableFormat(
    TableEdges edges, const std::vector<int>& columns, bool continues, bool sharesBorders);
// Empty when the table was not made by tableFormat().
const TableEdges& tableEdges(const QTextTableFormat& format);
bool continuesTable(const QTextTableFormat& format);

} // namespace genutil::richtext
