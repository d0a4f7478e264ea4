#include "platform/qt/rich/rich_text_formats.h"

#include "platform/qt/fonts.h"
#include "platform/qt/twip_scale.h"

#include <QTextList>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <utility>

namespace genutil::richtext {
namespace {

enum Property {
    FontName = QTextFormat::UserProperty + 1, // QString
    FontSize,                                 // points
    UnseenBackground,                         // QColor
    ForegroundIsOurs,
    Paragraph,       // text::ParagraphFormat
    Filler,          // bool
    Entry,           // text::ListEntry
    TableRightEdges, // std::shared_ptr<const TableEdges>
    TableContinues   // bool
};

constexpr double smallestFont = 1; // points, on the screen
constexpr double largestFont = 400;
constexpr int longestLength = 31680;  // twips; 22 inches, the longest side of a page
constexpr int listIndent = 360;       // twips that a list's marks need for each level
constexpr double pageBreakSpace = 12; // pixels above a paragraph that begins a page
constexpr double fillerHeight = 3;    // pixels

double shownPixels(int twips) {
    static const double twipsPerPixel = TwipScale::ofScreen().twipsPerPixel();
    return std::clamp(twips, -longestLength, longestLength) / twipsPerPixel;
}

QColor toQt(const text::Colour& colour) {
    return {colour.red, colour.green, colour.blue};
}

text::Colour fromQt(const QColor& colour) {
    return {std::uint8_t(colour.red()), std::uint8_t(colour.green()), std::uint8_t(colour.blue())};
}

constexpr std::array alignments{
    std::pair(text::ParagraphAlignment::Centre, Qt::AlignHCenter),
    std::pair(text::ParagraphAlignment::Right, Qt::AlignRight),
    std::pair(text::ParagraphAlignment::Justified, Qt::AlignJustify),
};

constexpr std::array tabKinds{QTextOption::LeftTab, QTextOption::CenterTab, QTextOption::RightTab,
    QTextOption::DelimiterTab}; // by TabStop::Kind

constexpr std::array listStyles{QTextListFormat::ListDisc, QTextListFormat::ListDecimal,
    QTextListFormat::ListLowerAlpha, QTextListFormat::ListUpperAlpha, QTextListFormat::ListLowerRoman,
    QTextListFormat::ListUpperRoman}; // by ListEntry::Kind

// The toolkit counts tab stops from where the line begins, the text from the paragraph's margin.
void setTabs(QTextBlockFormat& shown, const text::ParagraphFormat& format) {
    const double lineStart = shown.leftMargin() + shown.textIndent();
    QList<QTextOption::Tab> tabs;
    const auto add = [&](double position, QTextOption::TabType type) {
        if (position > 0)
            tabs.append({position, type, type == QTextOption::DelimiterTab ? QChar(u'.') : QChar()});
    };
    bool hangs = shown.textIndent() < 0;
    for (const text::TabStop& tab : format.tabs) {
        const double position = shownPixels(tab.position) - lineStart;
        if (hangs && position >= -shown.textIndent()) {
            if (position > -shown.textIndent())
                add(-shown.textIndent(), QTextOption::LeftTab);
            hangs = false;
        }
        add(position, tabKinds.at(std::size_t(tab.kind)));
    }
    if (hangs) // a hanging line has a stop where the other lines begin
        add(-shown.textIndent(), QTextOption::LeftTab);
    if (!tabs.isEmpty())
        shown.setTabPositions(tabs);
}

void setLineHeight(QTextBlockFormat& shown, const text::ParagraphFormat& format) {
    if (format.lineSpacing == 0)
        return;
    if (format.lineMultiple)
        shown.setLineHeight(std::clamp(std::abs(format.lineSpacing / 240.0) * 100, 20.0, 1000.0),
            QTextBlockFormat::ProportionalHeight);
    else if (format.lineSpacing > 0)
        shown.setLineHeight(shownPixels(format.lineSpacing), QTextBlockFormat::MinimumHeight);
    else
        shown.setLineHeight(std::max(1.0, -shownPixels(format.lineSpacing)), QTextBlockFormat::FixedHeight);
}

} // namespace

QTextCharFormat toQt(const text::CharacterFormat& format) {
    QTextCharFormat shown;
    if (!format.font.empty()) {
        const QFont font = toQFont({.name = format.font});
        shown.setFontFamilies(font.families());
        shown.setFontStyleHint(font.styleHint());
        shown.setProperty(FontName, QString::fromStdString(format.font));
    }
    shown.setFontPointSize(std::clamp(format.size, smallestFont, largestFont));
    shown.setProperty(FontSize, format.size);
    shown.setFontWeight(format.bold ? QFont::Bold : QFont::Normal);
    shown.setFontItalic(format.italic);
    shown.setFontUnderline(format.underline);
    shown.setFontStrikeOut(format.strike);
    if (format.position != text::VerticalPosition::Normal)
        shown.setVerticalAlignment(format.position == text::VerticalPosition::Superscript
                                       ? QTextCharFormat::AlignSuperScript
                                       : QTextCharFormat::AlignSubScript);
    if (format.foreground)
        shown.setForeground(toQt(*format.foreground));
    if (format.background) {
        shown.setBackground(toQt(*format.background));
        if (!format.foreground) { // the palette's colour may not be readable on this one
            shown.setForeground(qGray(toQt(*format.background).rgb()) < 128 ? Qt::white : Qt::black);
            shown.setProperty(ForegroundIsOurs, true);
        }
    }
    return shown;
}

QTextCharFormat toQtInCell(const text::CharacterFormat& format) {
    QTextCharFormat shown = toQt(format);
    if (format.background) {
        shown.clearBackground();
        shown.setProperty(UnseenBackground, toQt(*format.background));
        if (shown.boolProperty(ForegroundIsOurs))
            shown.clearForeground();
    }
    return shown;
}

text::CharacterFormat characterFormat(const QTextCharFormat& shown) {
    text::CharacterFormat format;
    format.font = shown.stringProperty(FontName).toStdString();
    if (shown.hasProperty(FontSize))
        format.size = shown.doubleProperty(FontSize);
    format.bold = shown.fontWeight() >= QFont::DemiBold;
    format.italic = shown.fontItalic();
    format.underline = shown.fontUnderline();
    format.strike = shown.fontStrikeOut();
    if (shown.verticalAlignment() == QTextCharFormat::AlignSuperScript)
        format.position = text::VerticalPosition::Superscript;
    else if (shown.verticalAlignment() == QTextCharFormat::AlignSubScript)
        format.position = text::VerticalPosition::Subscript;
    if (shown.hasProperty(QTextFormat::ForegroundBrush) && !shown.boolProperty(ForegroundIsOurs))
        format.foreground = fromQt(shown.foreground().color());
    if (shown.hasProperty(QTextFormat::BackgroundBrush))
        format.background = fromQt(shown.background().color());
    else if (shown.hasProperty(UnseenBackground))
        format.background = fromQt(shown.colorProperty(UnseenBackground));
    return format;
}

QTextBlockFormat toQt(const text::ParagraphFormat& format, double indentScale) {
    QTextBlockFormat shown;
    for (const auto& [alignment, flag] : alignments)
        if (alignment == format.alignment)
            shown.setAlignment(flag);
    // Nothing is placed left of the window. A list's mark stands in the space before the first line.
    int left = std::max(0, format.leftIndent);
    int first = format.firstLineIndent;
    if (format.list) {
        left = std::max(left, (std::clamp(format.list->level, 0, 8) + 1) * listIndent);
        first = std::max(0, first);
    }
    shown.setLeftMargin(shownPixels(left));
    shown.setRightMargin(std::max(0.0, shownPixels(format.rightIndent)));
    shown.setTextIndent(std::max(-shown.leftMargin(), shownPixels(first)));
    shown.setTopMargin(std::max(0.0, shownPixels(format.spaceBefore)));
    shown.setBottomMargin(std::max(0.0, shownPixels(format.spaceAfter)));
    if (format.pageBreakBefore) {
        shown.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        shown.setTopMargin(shown.topMargin() + pageBreakSpace);
    }
    setLineHeight(shown, format);
    setTabs(shown, format);
    if (indentScale != 1 && hasIndents(shown)) {
        shown.setLeftMargin(shown.leftMargin() * indentScale);
        shown.setRightMargin(shown.rightMargin() * indentScale);
        shown.setTextIndent(shown.textIndent() * indentScale);
    }
    if (format != text::ParagraphFormat())
        shown.setProperty(Paragraph, QVariant::fromValue(format));
    return shown;
}

text::ParagraphFormat paragraphFormat(const QTextBlock& block) {
    auto format = block.blockFormat().property(Paragraph).value<text::ParagraphFormat>();
    format.list = listEntry(block);
    return format;
}

bool hasIndents(const QTextBlockFormat& format) {
    return format.leftMargin() != 0 || format.rightMargin() != 0 || format.textIndent() != 0;
}

QTextBlockFormat afterBreak(const QTextBlock& block, double indentScale) {
    text::ParagraphFormat format = paragraphFormat(block);
    format.pageBreakBefore = false;
    QTextBlockFormat shown = toQt(format, indentScale);
    shown.setObjectIndex(block.blockFormat().objectIndex());
    return shown;
}

QTextListFormat toQt(const text::ListEntry& entry, int before) {
    static constexpr std::array bullets{
        QTextListFormat::ListDisc, QTextListFormat::ListCircle, QTextListFormat::ListSquare};
    QTextListFormat shown;
    shown.setStyle(entry.kind == text::ListEntry::Kind::Bullet ? bullets.at(unsigned(entry.level) % 3)
                                                               : listStyles.at(std::size_t(entry.kind)));
    shown.setIndent(0); // the paragraphs have their own
    if (before > 0 && entry.kind != text::ListEntry::Kind::Bullet)
        shown.setNumberPrefix(QString::number(before) + u'+');
    shown.setProperty(Entry, QVariant::fromValue(entry));
    return shown;
}

std::optional<text::ListEntry> listEntry(const QTextBlock& block) {
    const QTextList* list = block.textList();
    if (!list)
        return std::nullopt;
    return list->format().property(Entry).value<text::ListEntry>();
}

QTextBlockFormat fillerFormat() {
    QTextBlockFormat shown;
    shown.setProperty(Filler, true);
    shown.setLineHeight(fillerHeight, QTextBlockFormat::FixedHeight);
    return shown;
}

bool isFiller(const QTextBlockFormat& format) {
    return format.boolProperty(Filler);
}

QTextTableFormat tableFormat(
    TableEdges edges, const std::vector<int>& columns, bool continues, bool sharesBorders) {
    QTextTableFormat shown;
    QList<QTextLength> widths;
    for (const int width : columns)
        widths.append(QTextLength(QTextLength::FixedLength, shownPixels(width)));
    shown.setColumnWidthConstraints(widths);
    shown.setBorder(1);
    shown.setBorderCollapse(sharesBorders);
    shown.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    shown.setBorderBrush(QColor(128, 128, 128)); // seen on light and on dark
    shown.setCellPadding(3);
    shown.setCellSpacing(0);
    shown.setProperty(TableRightEdges, QVariant::fromValue(std::shared_ptr<const TableEdges>(
                                           std::make_shared<TableEdges>(std::move(edges)))));
    shown.setProperty(TableContinues, continues);
    return shown;
}

const TableEdges& tableEdges(const QTextTableFormat& format) {
    static const TableEdges none;
    const auto edges = format.property(TableRightEdges).value<std::shared_ptr<const TableEdges>>();
    return edges ? *edges : none; // the format keeps it
}

bool continuesTable(const QTextTableFormat& format) {
    return format.boolProperty(TableContinues);
}

} // namespace genutil::richtext
