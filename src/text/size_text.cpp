#include "text/size_text.h"

#include <array>

namespace genutil::text {

std::string sizeText(std::uint64_t bytes) {
    if (bytes < 1024)
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    constexpr std::array units{"KB", "MB", "GB", "TB"};
    double size = double(bytes) / 1024;
    std::size_t unit = 0;
    for (; size >= 999.95 && unit + 1 < units.size(); ++unit)
        size /= 1024;
    const auto tenths = std::uint64_t(size * 10 + 0.5);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " " + units[unit];
}

} // namespace genutil::text
