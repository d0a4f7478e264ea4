#include "text/rtf.h"

#include "text/rtf_characters.h"
#include "text/rtf_reader.h"
#include "text/utf8.h"

#include <algorithm>

namespace genutil::text {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view start = "{\\rtf";

std::string_view withoutMark(std::string_view bytes) {
    return bytes.starts_with(utf8Mark) ? bytes.substr(utf8Mark.size()) : bytes;
}

std::string_view withoutLeadingBlanks(std::string_view bytes) {
    bytes = withoutMark(bytes);
    return bytes.substr(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
}

std::string decodePlain(std::string_view bytes, const CodePages& pages) {
    if (isValidUtf8(bytes))
        return std::string(bytes);
    if (auto decoded = pages.decode(pages.systemCodePage(), bytes))
        return std::move(decoded->text);
    const auto western = basicCodePages().decode(encodings::windows1252, bytes);
    return western ? western->text : std::string();
}

RichText readPlain(std::string_view bytes, const CodePages& pages) {
    const std::string whole = decodePlain(withoutMark(bytes), pages);
    RichText text;
    std::string_view rest = whole;
    do {
        const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
        Paragraph paragraph;
        if (std::string line = rtf::cleanText(rest.substr(0, end)); !line.empty())
            paragraph.runs.push_back({std::move(line), {}, {}});
        text.blocks.emplace_back(std::move(paragraph));
        rest.remove_prefix(end);
        rest.remove_prefix(rest.starts_with("\r\n") ? 2 : std::min<std::size_t>(rest.size(), 1));
    } while (!rest.empty());
    return text;
}

} // namespace

bool looksLikeRtf(std::string_view bytes) {
    return withoutLeadingBlanks(bytes).starts_with(start);
}

RichText readRtf(std::string_view bytes, const CodePages& pages, bool* isWhole) {
    if (isWhole)
        *isWhole = true;
    if (!looksLikeRtf(bytes))
        return readPlain(bytes, pages);
    rtf::Reader reader(withoutLeadingBlanks(bytes), pages);
    RichText text = reader.read();
    if (isWhole)
        *isWhole = reader.isWhole();
    return text;
}

} // namespace genutil::text
