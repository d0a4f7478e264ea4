#include "text/line_index.h"

#include "text/character_width.h"

#include <limits>

namespace genutil::text {

OffsetList::OffsetList(std::uint64_t textSize) {
    if (textSize > std::numeric_limits<std::uint32_t>::max())
        offsets_.emplace<1>();
}

void OffsetList::append(std::size_t offset) {
    if (auto* small = std::get_if<0>(&offsets_))
        small->push_back(static_cast<std::uint32_t>(offset));
    else
        std::get<1>(offsets_).push_back(offset);
}

void OffsetList::trim() {
    std::visit([](auto& offsets) { offsets.shrink_to_fit(); }, offsets_);
}

std::size_t OffsetList::size() const {
    return std::visit([](const auto& offsets) { return offsets.size(); }, offsets_);
}

std::size_t OffsetList::operator[](std::size_t index) const {
    return std::visit([index](const auto& offsets) -> std::size_t { return offsets[index]; }, offsets_);
}

LineScan scanLines(std::string_view text, std::size_t begin) {
    LineScan scan{OffsetList(text.size()), {}};
    std::size_t column = 0;
    const auto endLine = [&] {
        if (column > scan.widest.columns)
            scan.widest = {scan.starts.size() - 1, column};
        column = 0;
    };

    scan.starts.append(begin);
    for (std::size_t position = begin; position < text.size();) {
        const char byte = text[position];
        if (byte == '\n' || byte == '\r') {
            const bool pair = byte == '\r' && position + 1 < text.size() && text[position + 1] == '\n';
            position += pair ? 2 : 1;
            endLine();
            scan.starts.append(position);
        } else {
            column = advanceColumns(text, position, column);
        }
    }
    endLine();
    scan.starts.trim();
    return scan;
}

} // namespace genutil::text
