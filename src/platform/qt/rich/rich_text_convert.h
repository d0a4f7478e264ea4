#pragma once

#include "text/rich_text.h"
#include "text/text_position.h"

#include <QTextDocument>

#include <string>

class QPaintDevice;
class QTextCursor;

// Rich texts as documents of the toolkit, and back: read() gives back what fill() was given.
namespace genutil::richtext {

// The document of a rich text. It loads nothing from files or from elsewhere; its pictures are in its
// formats.
class RichDocument : public QTextDocument {
public:
    RichDocument();
    // Only now the document gets a layout: filling one that has is many times slower.
    void beShownOn(QPaintDevice* device);

protected:
    QVariant loadResource(int type, const QUrl& name) override;
};

// Characters that the toolkit's documents use for their structure (U+2029, U+FDD0, U+FDD1) and control
// characters become U+FFFD.
void fill(QTextDocument& document, const text::RichText& text, double indentScale = 1);
text::RichText read(const QTextDocument& document);

// Puts the text in the place of the selection, in one step to undo. Its first paragraph goes on from what
// stands before it, unless that is an empty paragraph. In a table a table is inserted as the paragraphs of
// its cells.
void insert(QTextCursor& cursor, const text::RichText& text, double indentScale = 1);

// Shows indents at another scale than they were filled in with. What there was to undo is lost.
void scaleIndents(QTextDocument& document, double indentScale);

// The words, one line for each block of the document; pictures are U+FFFC, inner line breaks U+2028.
std::string words(const QTextDocument& document);
// Places in those words as positions in the document, and back; a place outside of the words is its nearest.
int positionOf(const QTextDocument& document, text::TextPosition place);
text::TextPosition placeOf(const QTextDocument& document, int position);

// Gives the paragraph at the position a height once there is text in a paragraph that only the document had.
// True when there was something to do.
bool keepFiller(QTextDocument& document, int position);

} // namespace genutil::richtext
