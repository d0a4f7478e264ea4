#include "text/rtf_header_tables.h"

#include "text/ascii.h"

#include <algorithm>
#include <utility>

namespace genutil::text::rtf {

namespace {

std::string tidyName(std::string name) {
    std::erase_if(name, [](char c) { return c == '\t'; });
    const std::size_t start = std::min(name.find_first_not_of(' '), name.size());
    name.erase(0, start);
    if (name.size() > longestFontName) {
        std::size_t end = longestFontName;
        while ((name[end] & 0xC0) == 0x80)
            --end;
        name.resize(end);
    }
    name.resize(name.find_last_not_of(' ') + 1);
    return name;
}

} // namespace

void FontTable::select(int number) {
    finish();
    selected_ = number;
}

void FontTable::addText(std::string_view text) {
    while (selected_ && !text.empty()) {
        const std::size_t end = std::min(text.find(';'), text.size());
        described_.name += text.substr(0, end);
        if (end == text.size())
            return;
        finish();
        text.remove_prefix(end + 1);
    }
}

void FontTable::finish() {
    if (selected_) {
        described_.name = tidyName(std::move(described_.name));
        if (described_.codePage == signsCodePage && equalsIgnoringCase(described_.name, "Symbol"))
            described_.codePage = symbolCodePage;
        fonts_[*selected_] = std::move(described_);
    }
    described_ = {};
    selected_.reset();
}

const FontTable::Font* FontTable::find(std::optional<int> number) const {
    const auto found = fonts_.find(number.value_or(defaultFont_));
    return found == fonts_.end() ? nullptr : &found->second;
}

std::string FontTable::nameOf(std::optional<int> number) const {
    const Font* font = find(number);
    return font ? font->name : std::string();
}

int FontTable::codePageOf(std::optional<int> number) const {
    const Font* font = find(number);
    return pageOrDocuments(font ? font->codePage : 0);
}

void ColourTable::setPart(std::uint8_t Colour::*part, int value) {
    if (!described_)
        described_.emplace();
    (*described_).*part = static_cast<std::uint8_t>(std::clamp(value, 0, 255));
}

void ColourTable::addText(std::string_view text) {
    for (auto count = std::ranges::count(text, ';'); count > 0; --count)
        colours_.push_back(std::exchange(described_, std::nullopt));
}

std::optional<Colour> ColourTable::at(int number) const {
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < colours_.size() ? colours_[index] : std::nullopt;
}

} // namespace genutil::text::rtf
