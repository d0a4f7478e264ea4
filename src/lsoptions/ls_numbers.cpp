#include "lsoptions/ls_numbers.h"

#include "hostif/error.h"

#include <algorithm>
#include <charconv>

namespace genutil {
namespace {

std::string withPoint(std::string_view text) {
    std::string plain(text);
    std::erase(plain, ' ');
    const std::string& point = numberLocale().decimalPoint;
    if (const auto at = plain.find(point); at != std::string::npos)
        plain.replace(at, point.size(), ".");
    return plain;
}

} // namespace

double lsValueOf(std::string_view text) {
    return leadingNumber(withPoint(text));
}

double lsNumberIn(const LSOption& option, const std::string& text) {
    const std::string plain = withPoint(text);
    const char* const begin = plain.data() + (plain.starts_with('+') ? 1 : 0);
    const char* const end = plain.data() + plain.size();
    double number = 0;
    const auto [stop, fault] = std::from_chars(begin, end, number);
    if (fault != std::errc() || stop != end)
        throw Error(errors::TypeMismatch,
            "The option " + std::string(option.name()) + " must be a number, not '" + text + "'");
    return number;
}

std::string lsToolTip(const LSOption& option) {
    const std::string unit = option.unit;
    return option.help + (unit.empty() ? std::string() : " Unit: " + unit + ".");
}

} // namespace genutil
