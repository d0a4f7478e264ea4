#pragma once

#include "hostif/control.h"
#include "hostif/printer.h"

#include <functional>
#include <string>
#include <utility>

namespace genutil {

// A page of a document as it will be on paper. Lengths are twips.
class PrintedPage : public Control {
public:
    // What `picture` is asked for.
    using Painter = std::function<PagePicture(std::size_t page, int width, int height)>;

    PrintedPage(Form& form, std::string name, double paperWidth, double paperHeight, Painter painter)
        : Control(form, std::move(name)), sheetWidth(paperWidth), sheetHeight(paperHeight),
          picture(std::move(painter)) {}

    // Zooms that go by the room that the view has.
    static constexpr int wholePage = 0;
    static constexpr int pageWidth = -1;

    const double sheetWidth;
    const double sheetHeight;
    // What the sheet looks like in so many pixels; of no size when that failed.
    const Painter picture;

    Observed<std::size_t> page{*this, Aspect::Value, 1}; // counted from 1
    Observed<int> zoom{*this, Aspect::Value, wholePage}; // percent of the sheet's real size

    // What the view reports.
    Event<int> userTurn; // how many pages on; negative: back
    // Steps, of which negative ones make the page smaller, and the percentage that is shown now.
    Event<int, double> userZoom;
};

} // namespace genutil
