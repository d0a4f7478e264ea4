#pragma once

#include "hostif/error.h"
#include "hostif/printer.h"
#include "text/character_width.h"

#include <string>
#include <vector>

namespace genutil::fake {

// A printer that keeps what is printed. A character of a font of n points is 12 n twips wide and 24 n high; a
// sheet is A4 less 240 twips (16 pixels) on every side.
class RecordingPrinter : public Printer {
public:
    struct Line {
        std::string text; // marks in square brackets
        double x, y;
        Font font;
    };
    struct Page {
        bool landscape;
        std::vector<Line> lines;
    };
    enum class Turning { Accepted, Ignored, Refused };

    std::vector<Page> pages; // of the document
    std::vector<PageSettings> settings;
    std::vector<PrinterDevice> devices{{"Laser", "ps", "lp0"}, {"Plotter", "hpgl", "lp1"}};
    Turning turning = Turning::Accepted;
    double offsetPixels = 16;
    std::size_t failAtPage = 0; // fails when this page is begun
    int ended = 0, cancelled = 0;
    std::vector<Page>* kept = nullptr; // where an ended document is kept longer than the printer

    std::vector<PrinterDevice> installed() override { return devices; }
    PrinterDevice device() const override { return current_; }
    void choose(const PrinterDevice& device) override { current_ = device; }
    PageSettings page() const override { return page_; }
    void setPage(const PageSettings& wanted) override {
        PageSettings taken = wanted;
        if (turning == Turning::Refused && wanted.orientation != page_.orientation)
            throw Error(errors::DeviceError, "cannot be turned");
        if (turning == Turning::Ignored)
            taken.orientation = page_.orientation;
        page_ = taken;
        settings.push_back(wanted);
    }
    double scaleWidth() const override { return sheetWidth() - 480; }
    double scaleHeight() const override { return sheetHeight() - 480; }
    double sheetWidth() const override { return isLandscape() ? 16838 : 11906; }
    double sheetHeight() const override { return isLandscape() ? 11906 : 16838; }
    double physicalOffsetX() const override { return offsetPixels; }
    double physicalOffsetY() const override { return offsetPixels; }
    double twipsPerPixelX() const override { return 15; }
    double twipsPerPixelY() const override { return 15; }
    Font font() const override { return font_; }
    void setFont(const Font& font) override { font_ = font; }
    double textWidth(const std::string& text) const override {
        return double(text::columnsOf(text)) * 12 * font_.size;
    }
    double textHeight(const std::string&) const override { return 24 * font_.size; }
    double currentX() const override { return x_; }
    double currentY() const override { return y_; }
    void setCurrent(double x, double y) override {
        x_ = x;
        y_ = y;
    }
    void printLine(const PrintedLine& line) override {
        if (pages.empty())
            begin();
        std::string shown = line.text;
        for (auto mark = line.marks.rbegin(); mark != line.marks.rend(); ++mark)
            shown.replace(*mark, 1, std::string("[") + shown[*mark] + "]");
        pages.back().lines.push_back({shown, x_, y_, font_});
        x_ = 0;
        y_ += textHeight("");
    }
    void newPage() override {
        begin();
        x_ = y_ = 0;
    }
    void endDocument() override {
        ++ended;
        if (kept)
            *kept = pages;
    }
    void cancelDocument() override {
        ++cancelled;
        pages.clear();
    }

    // Prints on the document's pages.
    PagePicture picture(int width, int height, const std::function<void()>& print) override {
        print();
        return {width, height, {}};
    }

    // The lines of each page below its header.
    std::vector<std::vector<std::string>> bodies() const {
        std::vector<std::vector<std::string>> all;
        for (const Page& page : pages) {
            all.emplace_back();
            for (std::size_t i = 1; i < page.lines.size(); ++i)
                all.back().push_back(page.lines[i].text);
        }
        return all;
    }

private:
    bool isLandscape() const { return page_.orientation == PageOrientation::Landscape; }
    void begin() {
        if (failAtPage == pages.size() + 1)
            throw Error(errors::DeviceError, "out of paper");
        pages.push_back({isLandscape(), {}});
    }

    PrinterDevice current_ = devices.front();
    PageSettings page_;
    Font font_;
    double x_ = 0, y_ = 0;
};

} // namespace genutil::fake
