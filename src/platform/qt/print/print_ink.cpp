#include "platform/qt/print/print_ink.h"

#include "platform/qt/text/character_steps.h"
#include "platform/qt/text/script_runs.h"
#include "text/character_width.h"
#include "text/utf8.h"

#include <QGlyphRun>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace genutil {
namespace {

constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();

// A line's place on the paper.
struct Place {
    QPointF at; // the left top corner
    double ascent;
    double height;
    double columnWidth;

    // In whole dots, which is finer than an eye can tell and far shorter to write.
    double x(std::size_t column) const { return at.x() + std::round(double(column) * columnWidth); }
    QRectF cell(std::size_t column, std::size_t columns) const {
        return {QPointF(x(column), at.y()), QPointF(x(column + columns), at.y() + height)};
    }
};

// Glyphs of one font that wait to be painted at once.
class Run {
public:
    Run(QPainter& painter, PrintGlyphs& glyphs, const Place& place)
        : painter_(painter), glyphs_(glyphs), place_(place) {}

    void add(const PrintGlyphs::Glyph& glyph, std::size_t column) {
        if (glyph.font != font_)
            paint();
        font_ = glyph.font;
        indexes_.push_back(glyph.index);
        positions_.emplace_back(place_.x(column) + std::round(glyph.shift), place_.at.y() + place_.ascent);
    }
    void paint() {
        if (indexes_.empty())
            return;
        QGlyphRun run;
        run.setRawFont(glyphs_.font(font_));
        run.setRawData(indexes_.data(), positions_.data(), int(indexes_.size()));
        painter_.drawGlyphRun({}, run);
        indexes_.clear();
        positions_.clear();
    }

private:
    QPainter& painter_;
    PrintGlyphs& glyphs_;
    const Place& place_;
    std::size_t font_ = 0;
    std::vector<quint32> indexes_;
    std::vector<QPointF> positions_;
};

class Writer {
public:
    Writer(QPainter& painter, PrintGlyphs& glyphs, const Place& place)
        : painter_(painter), glyphs_(glyphs), place_(place), run_(painter, glyphs, place) {}

    // Up to the column, which need not be reached.
    void write(const PrintedLine& line, std::size_t columns) {
        const std::string_view text = line.text;
        auto mark = line.marks.begin();
        for (std::size_t byte = 0; byte < text.size() && column_ < columns;) {
            std::size_t end = nextCharacter(text, byte);
            if (mark != line.marks.end() && *mark == byte) {
                for (end = byte; mark != line.marks.end() && *mark == end && end - byte < columns; ++mark)
                    ++end;
                writeMarks(text.substr(byte, end - byte));
            } else if (end == byte + 1 && static_cast<unsigned char>(text[byte]) < 0x80) {
                writePlain(text[byte]);
            } else if (isComplex(text::decodeUtf8(text, byte).codePoint)) {
                end = scriptRunEnd(text, byte);
                writeScript(text.substr(byte, end - byte));
            } else {
                writeCharacter(text.substr(byte, end - byte));
            }
            byte = end;
        }
        run_.paint();
    }

private:
    // Of several blanks the first one is enough to tell words apart.
    void writePlain(char character) {
        const bool isBlank = character == ' ';
        if (!isBlank || !afterBlank_)
            writeGlyph(char32_t(character), 1);
        afterBlank_ = isBlank;
        ++column_;
    }

    void writeCharacter(std::string_view character) {
        afterBlank_ = false;
        const std::size_t columns = text::columnsOf(character);
        const QString shown = composed(character);
        if (columns == 0)
            writeBareMarks(shown);
        else if (const QList<uint> points = shown.toUcs4(); points.size() == 1)
            writeGlyph(points[0], columns);
        else
            shape(shown, columns, true);
        column_ += columns;
        // Those that are too many for one character are no character of their own.
        if (shown.size() > 1)
            bareMarks_ = column_;
    }

    // Marks without a letter stand on a blank; where there are many, the first ones are all that could be
    // told.
    void writeBareMarks(const QString& marks) {
        if (bareMarks_ != column_)
            shape(QChar(QChar::Nbsp) + marks, 1, true);
        bareMarks_ = column_;
    }

    void writeGlyph(char32_t character, std::size_t columns) {
        if (const auto& glyph = glyphs_.of(character))
            run_.add(*glyph, column_);
        else
            shape(QString::fromUcs4(&character, 1), columns, true);
    }

    // Letters that belong together begin on the first one's column and end before what follows.
    void writeScript(std::string_view letters) {
        afterBlank_ = false;
        const std::size_t columns = text::columnsOf(letters);
        if (columns == 0)
            writeBareMarks(composed(letters));
        else
            shape(QString::fromUtf8(letters.data(), qsizetype(letters.size())), columns, false);
        column_ += columns;
        bareMarks_ = column_;
    }

    void shape(const QString& text, std::size_t columns, bool isOne) {
        run_.paint();
        glyphs_.shaped(text).paint(painter_, place_.cell(column_, columns), place_.ascent, isOne);
    }

    // White on black, with a gap on all sides that tells them from each other.
    void writeMarks(std::string_view signs) {
        run_.paint();
        const double gap = place_.columnWidth / 16;
        const std::size_t first = column_;
        QPainterPath boxes;
        for (std::size_t i = 0; i < signs.size(); ++i)
            boxes.addRect(place_.cell(first + i, 1).adjusted(gap, gap, -gap, -gap));
        painter_.fillPath(boxes, Qt::black);
        painter_.setPen(Qt::white);
        for (const char sign : signs)
            writePlain(sign);
        run_.paint();
        painter_.setPen(Qt::black);
    }

    QPainter& painter_;
    PrintGlyphs& glyphs_;
    const Place& place_;
    Run run_;
    std::size_t column_ = 0;
    std::size_t bareMarks_ = nowhere; // the column where there are enough
    bool afterBlank_ = true;
};

} // namespace

PrintInk::PrintInk(const QFont& font, QPaintDevice* device)
    : font_(font, device), metrics_(font_, device), columnWidth_(metrics_.horizontalAdvance(QChar(u'x'))),
      glyphs_(font_, columnWidth_) {}

double PrintInk::width(std::string_view text) const {
    return double(text::columnsOf(text)) * columnWidth_;
}

void PrintInk::paint(QPainter& painter, const QPointF& at, double right, const PrintedLine& line) {
    const double columns = std::max(std::ceil((right - at.x()) / columnWidth_), 0.0);
    const bool mayPass = double(line.text.size()) > columns - 1;
    if (mayPass) {
        painter.save();
        painter.setClipRect(QRectF(at, QPointF(right, at.y() + lineHeight())), Qt::IntersectClip);
    }
    const Place place{at, metrics_.ascent(), lineHeight(), columnWidth_};
    Writer(painter, glyphs_, place).write(line, std::size_t(columns));
    if (mayPass)
        painter.restore();
}

} // namespace genutil
