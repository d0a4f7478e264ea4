#include "joblist/job_cells.h"

#include "hostif/date.h"
#include "hostif/error.h"
#include "hostif/value.h"
#include "text/ascii.h"
#include "text/blanks.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <optional>

namespace genutil {
namespace {

const std::string& stored(const JobRow& job, std::int32_t column) {
    return job[std::size_t(column) - 1];
}

// The part of a date text that holds the date: without the weekday and what separates it.
std::string datePart(const std::string& text) {
    const std::size_t comma = text.find(',');
    const std::string part = text::trimBlanks(comma == std::string::npos ? text : text.substr(comma));
    const std::size_t start = part.find_first_not_of(", ");
    return start == std::string::npos ? std::string() : part.substr(start);
}

std::optional<ShownDate> tryShownDate(const std::string& text) {
    const std::string part = datePart(text);
    if (part.empty())
        return ShownDate();
    if (const auto date = readDate(part))
        return ShownDate{dateText(*date), dayNumber(*date)};
    return std::nullopt;
}

std::string digits(int number, std::size_t count) {
    const std::string text = std::to_string(number);
    return std::string(count - std::min(count, text.size()), '0') + text;
}

} // namespace

ShownDate shownDate(const std::string& text) {
    if (const auto date = tryShownDate(text))
        return *date;
    throw Error(errors::TypeMismatch, "'" + text + "' cannot be read as a date");
}

std::string jobText(const std::string& file, bool showExt) {
    if (showExt)
        return file;
    const std::string lower = text::asciiLower(file);
    for (const char* extension : {".gdb", ".mdb"})
        if (const std::size_t at = lower.find(extension); at != std::string::npos)
            return file.substr(0, at);
    return file;
}

std::string coordSystemText(const std::string& text) {
    constexpr std::array names{"Plane", "Grid Projection", "Geographic"};
    for (std::size_t type = 0; type < names.size(); ++type)
        if (leadingNumber(text) == double(type))
            return names[type];
    return {};
}

std::string limitedText(const std::string& text, std::int32_t limit) {
    const std::string trimmed = text::trimBlanks(text);
    std::size_t end = 0;
    for (std::int32_t i = 0; i < limit && end < trimmed.size(); ++i)
        end += text::decodeUtf8(trimmed, end).length;
    return limit == 0 ? trimmed : trimmed.substr(0, end);
}

std::string fullText(const JobRow& job, std::int32_t column) {
    const std::string& text = stored(job, column);
    if (column == jobcolumn::Job)
        return text; // blanks may be a part of a file's name
    if (column == jobcolumn::CoordSystem)
        return coordSystemText(text);
    if (column == jobcolumn::CreateDate)
        if (const auto date = tryShownDate(text); date && !date->text.empty())
            return date->text;
    return text::trimBlanks(text);
}

std::string isoDateText(const JobRow& job) {
    const auto date = readDate(datePart(stored(job, jobcolumn::CreateDate)));
    return date ? digits(date->year, 4) + '-' + digits(date->month, 2) + '-' + digits(date->day, 2)
                : fullText(job, jobcolumn::CreateDate);
}

std::int32_t dateKey(const JobRow& job) {
    const auto date = tryShownDate(stored(job, jobcolumn::CreateDate));
    return date ? date->key : ShownDate::withoutDate;
}

} // namespace genutil
