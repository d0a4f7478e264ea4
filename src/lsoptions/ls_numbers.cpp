#include "lsoptions/ls_numbers.h"

#include "hostif/error.h"

#include <charconv>
#include <string>

namespace genutil {
namespace {

std::string withoutBlanks(std::string_view text) {
    std::string dense(text);
    std::erase(dense, ' ');
    return dense;
}

} // namespace

double lsValueOf(std::string_view text) {
    return leadingNumber(withPoint(withoutBlanks(text)));
}

bool lsIsNumber(std::string_view text) {
    const std::string plain = withPoint(withoutBlanks(text));
    const char* const first = plain.data() + (plain.starts_with('+') ? 1 : 0);
    double value = 0;
    const auto [end, error] = std::from_chars(first, plain.data() + plain.size(), value);
    return error == std::errc() && end == plain.data() + plain.size();
}

bool lsIsBeyondDoubles(std::string_view text) {
    const std::string plain = withPoint(withoutBlanks(text));
    const char* const first = plain.data() + (plain.starts_with('+') ? 1 : 0);
    double value = 0;
    return std::from_chars(first, plain.data() + plain.size(), value).ec == std::errc::result_out_of_range;
}

double lsNumberIn(const LSOption& option, const std::string& text) {
    if (const auto number = wholeNumber(withoutBlanks(text)))
        return *number;
    throw Error(errors::TypeMismatch,
        "The option " + std::string(option.name()) + " must be a number, not '" + text + "'");
}

std::string lsToolTip(const LSOption& option) {
    const std::string unit = option.unit;
    return option.help + (unit.empty() ? std::string() : " Unit: " + unit + ".");
}

} // namespace genutil
