#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

namespace genutil::text {

// Byte offsets in rising order, four bytes each while the text they point into is below 4 GiB, else eight.
class OffsetList {
public:
    explicit OffsetList(std::uint64_t textSize);

    void append(std::size_t offset);
    void trim(); // gives back the memory kept for growth

    std::size_t size() const;
    std::size_t operator[](std::size_t index) const;

private:
    std::variant<std::vector<std::uint32_t>, std::vector<std::uint64_t>> offsets_;
};

struct WidestLine {
    std::size_t index = 0;
    std::size_t columns = 0;
};

struct LineScan {
    OffsetList starts;
    WidestLine widest; // the first of equally wide lines
};

// Finds where each line of the UTF-8 text starts, and its widest line, in one pass beginning at byte `begin`.
// LF, CR LF and a lone CR each end a line; there is always one line more than there are line ends.
LineScan scanLines(std::string_view text, std::size_t begin);

} // namespace genutil::text
