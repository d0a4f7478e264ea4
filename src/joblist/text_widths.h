#pragma once

#include "hostif/desktop.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace genutil {

// The widths of a list's texts in twips, each measured once however many cells hold it.
class TextWidths {
public:
    TextWidths(Desktop& desktop, const Font& font) : desktop_(desktop), font_(font) {}

    // The text's width; of a long text, the width of as much of it as is wider than `enough`.
    double of(const std::string& text, double enough);

private:
    double measured(std::string_view text);

    Desktop& desktop_;
    Font font_;
    std::unordered_map<std::string, double> known_;
};

} // namespace genutil
