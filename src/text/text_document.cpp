#include "text/text_document.h"

#include "text/file_bytes.h"
#include "text/utf8.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace genutil::text {

namespace {

// Windows-1252 differs from Latin-1 in these 32 places.
constexpr char32_t windows1252From80[] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D,
    0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::string fromWindows1252(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    while (!bytes.empty()) {
        const auto above =
            std::ranges::find_if(bytes, [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
        out.append(bytes.begin(), above);
        bytes.remove_prefix(static_cast<std::size_t>(above - bytes.begin()));
        if (bytes.empty())
            break;
        const auto value = static_cast<unsigned char>(bytes.front());
        appendUtf8(out, value < 0xA0 ? windows1252From80[value - 0x80] : value);
        bytes.remove_prefix(1);
    }
    return out;
}

} // namespace

TextDocument::TextDocument(std::string bytes, std::size_t begin, Encoding encoding)
    : bytes_(std::move(bytes)), lines_(scanLines(bytes_, begin)), encoding_(encoding) {}

TextDocument TextDocument::read(const std::filesystem::path& path) {
    return fromBytes(readFileBytes(path));
}

TextDocument TextDocument::fromBytes(std::string bytes) {
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
    const std::string_view view = bytes;
    if (view.starts_with("\xFF\xFE"))
        return {fromUtf16Bytes(view.substr(2), ByteOrder::LittleEndian), 0, Encoding::Utf16LittleEndian};
    if (view.starts_with("\xFE\xFF"))
        return {fromUtf16Bytes(view.substr(2), ByteOrder::BigEndian), 0, Encoding::Utf16BigEndian};
    if (view.starts_with(utf8Mark))
        return {std::move(bytes), utf8Mark.size(), Encoding::Utf8WithMark};
    if (isValidUtf8(view))
        return {std::move(bytes), 0, Encoding::Utf8};
    return {fromWindows1252(view), 0, Encoding::Windows1252};
}

std::string_view TextDocument::line(std::size_t index) const {
    if (index >= lineCount())
        throw std::out_of_range("line " + std::to_string(index) + " of a text with " +
                                std::to_string(lineCount()) + " lines (lines are counted from 0)");
    const std::size_t start = lines_.starts[index];
    const std::size_t end = index + 1 < lineCount() ? lines_.starts[index + 1] : bytes_.size();
    std::string_view text(bytes_.data() + start, end - start);
    if (text.ends_with('\n'))
        text.remove_suffix(1);
    if (text.ends_with('\r'))
        text.remove_suffix(1);
    return text;
}

} // namespace genutil::text
