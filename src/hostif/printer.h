#pragma once

#include "hostif/control.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace genutil {

// A sheet's orientation, numbered as printer drivers number it.
enum class PageOrientation : std::int16_t { Portrait = 1, Landscape = 2 };

// The paper and how it is printed on. The numbers are those of printer drivers; 0 leaves a setting to the
// printer.
struct PageSettings {
    static constexpr std::int16_t a4 = 9;
    static constexpr std::int16_t oneSide = 1;

    PageOrientation orientation = PageOrientation::Portrait;
    std::int16_t paperSize = a4;
    std::int16_t paperBin = 0;
    std::int16_t colorMode = 0; // 1 monochrome, 2 colour
    std::int16_t duplex = 0;    // 1 one side, 2 turned over the short edge, 3 over the long edge
    std::int16_t quality = 0;   // dots per inch; -1 draft to -4 high
    std::int16_t copies = 1;

    friend bool operator==(const PageSettings&, const PageSettings&) = default;
};

struct PrinterDevice {
    std::string name;
    std::string driver;
    std::string port;

    friend bool operator==(const PrinterDevice&, const PrinterDevice&) = default;
};

// A line as it is printed: an invisible character, or one that would move what follows, is replaced by its
// sign (text::controlMark()), which is printed in inverse video. The text holds no control character.
struct PrintedLine {
    std::string text;               // UTF-8, tabs as blanks
    std::vector<std::size_t> marks; // where the signs are, in UTF-8 units, ascending
};

// What a sheet looks like.
struct PagePicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels; // row after row; 0xffRRGGBB
};

// A printer, or what stands for one. Lengths are twips from the left top corner of the sheet's printable
// area. A text is printed from the current place on; nothing appears on paper before endDocument(). Throws
// Error with DeviceError and a description that names the printer when it fails.
class Printer {
public:
    virtual ~Printer() = default;

    virtual std::vector<PrinterDevice> installed() = 0;
    virtual PrinterDevice device() const = 0;
    // Makes another printer the current one. Call only while no document is open.
    virtual void choose(const PrinterDevice& device) = 0;

    virtual PageSettings page() const = 0;
    // A printer ignores, or refuses with an error, what it cannot do; page() tells what is in force. Call
    // only while no document is open.
    virtual void setPage(const PageSettings& settings) = 0;
    // The printable area in the present orientation.
    virtual double scaleWidth() const = 0;
    virtual double scaleHeight() const = 0;
    // The whole sheet.
    virtual double sheetWidth() const = 0;
    virtual double sheetHeight() const = 0;
    // The sheet's unprintable left and top margins in the printer's pixels, and how long one is.
    virtual double physicalOffsetX() const = 0;
    virtual double physicalOffsetY() const = 0;
    virtual double twipsPerPixelX() const = 0;
    virtual double twipsPerPixelY() const = 0;

    // The next document's name in the printer's queue, or its title in a file's properties. Call only while
    // no document is open.
    virtual void setTitle(const std::string& /*title*/) {}

    virtual Font font() const = 0;
    virtual void setFont(const Font& font) = 0;
    // The width of a line, and the distance from one line to the next, in the current font. In a fixed-pitch
    // font every character is printed on its column, as text::columnsOf() counts, so that a text is as wide
    // as its columns.
    virtual double textWidth(const std::string& text) const = 0;
    virtual double textHeight(const std::string& text) const = 0;

    virtual double currentX() const = 0;
    virtual double currentY() const = 0;
    virtual void setCurrent(double x, double y) = 0;

    // Prints the line at the current place, which then moves to the left end of the next line. What passes
    // the printable area is cut off.
    virtual void printLine(const PrintedLine& line) = 0;
    // Ends the page and begins another; the current place is its left top corner.
    virtual void newPage() = 0;
    // Ends the document that the first printed line has opened, and prints it. Does nothing without one.
    virtual void endDocument() = 0;
    // Abandons the document: unless the printer has begun to print it, nothing of it appears.
    virtual void cancelDocument() = 0;

    // A picture of the whole sheet, width x height pixels, with what `print` prints on this printer meanwhile
    // (at most one page). Call only while no document is open; it opens none.
    virtual PagePicture picture(int width, int height, const std::function<void()>& print) = 0;
};

namespace printflags {
inline constexpr std::int32_t Selection = 1;
inline constexpr std::int32_t PageNumbers = 2;
inline constexpr std::int32_t InformationContext = 512;
} // namespace printflags

// What a document becomes on paper.
struct PrintEstimate {
    std::size_t pageCount = 0;
    std::string cutOff; // what does not fit on the sheets; "" for nothing
};

// What a printer dialog is given, and what the user has chosen.
struct PrintDialog {
    // The file that is printed. A PDF file is proposed beside it, and never takes its place.
    std::string document;
    PrinterDevice device;
    PageSettings page;
    int fromPage = 1;
    int toPage = 1;
    int minPage = 1;
    int maxPage = 1;
    std::int32_t flags = 0; // printflags; Selection offers the selection, and is preset
    // What the whole document becomes on this printer with these settings; may take half a second. Unset, or
    // nothing, where that is not known.
    std::function<std::optional<PrintEstimate>(const PrinterDevice&, const PageSettings&)> estimate = {};
};

} // namespace genutil
