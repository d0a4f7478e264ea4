#include "hostif/value.h"

#include "hostif/error.h"
#include "text/ascii.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

namespace genutil {
namespace {

NumberLocale& currentLocale() {
    static NumberLocale locale;
    return locale;
}

bool startsWith(std::string_view text, std::size_t at, std::string_view part) {
    return !part.empty() && text.substr(at, part.size()) == part;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The text in the form that from_chars reads: a point as decimal separator, group separators of the integer
// part and a leading plus removed.
std::string plainNumber(std::string_view text) {
    const NumberLocale& locale = numberLocale();
    std::string plain;
    bool integerPart = true;
    for (std::size_t i = 0; i < text.size();) {
        if (startsWith(text, i, locale.decimalPoint)) {
            plain += '.';
            integerPart = false;
            i += locale.decimalPoint.size();
        } else if (integerPart && i > 0 && startsWith(text, i, locale.groupSeparator)) {
            i += locale.groupSeparator.size();
        } else {
            const char c = text[i++];
            const bool mayStand = (c >= '0' && c <= '9') || c == '-' || c == '+' || c == 'e' || c == 'E';
            if (!mayStand)
                return {};
            integerPart = integerPart && c != 'e' && c != 'E';
            if (c != '+' || !plain.empty())
                plain += c;
        }
    }
    return plain;
}

double numberFromText(const std::string& text) {
    const std::string plain = plainNumber(trimmed(text));
    double value = 0;
    const auto [end, failure] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    if (failure == std::errc::result_out_of_range)
        throw Error(errors::Overflow, "Overflow: '" + text + "' is out of a number's range");
    if (plain.empty() || failure != std::errc() || end != plain.data() + plain.size())
        throw Error(errors::TypeMismatch, "Type mismatch: '" + text + "' is not a number");
    return value;
}

// Rounds halves to the even neighbour whatever the thread's rounding mode.
double roundHalfEven(double value) {
    const double floor = std::floor(value);
    const double fraction = value - floor;
    if (fraction < 0.5 || (fraction == 0.5 && std::fmod(floor, 2.0) == 0.0))
        return floor;
    return floor + 1;
}

template<class Integer>
Integer toInteger(double value) {
    const double rounded = roundHalfEven(value);
    using Limits = std::numeric_limits<Integer>;
    if (!(rounded >= double(Limits::min()) && rounded <= double(Limits::max())))
        throw Error(errors::Overflow, "Overflow: " + numberText(value) + " is outside " +
                                          std::to_string(Limits::min()) + " to " +
                                          std::to_string(Limits::max()));
    return Integer(rounded);
}

} // namespace

const NumberLocale& numberLocale() {
    return currentLocale();
}

void setNumberLocale(NumberLocale locale) {
    currentLocale() = std::move(locale);
}

double Value::toDouble() const {
    return std::visit(
        [](const auto& v) -> double {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, Null>)
                throw Error(errors::InvalidNull);
            else if constexpr (std::is_same_v<T, std::string>)
                return numberFromText(v);
            else if constexpr (std::is_same_v<T, bool>)
                return v ? -1.0 : 0.0;
            else
                return double(v);
        },
        storage_);
}

bool Value::toBool() const {
    if (const auto* flag = std::get_if<bool>(&storage_))
        return *flag;
    if (const auto* text = std::get_if<std::string>(&storage_)) {
        const std::string_view word = trimmed(*text);
        if (text::equalsIgnoringCase(word, "true"))
            return true;
        if (text::equalsIgnoringCase(word, "false"))
            return false;
    }
    return toDouble() != 0;
}

std::uint8_t Value::toByte() const {
    if (const auto* flag = std::get_if<bool>(&storage_))
        return *flag ? 255 : 0;
    return toInteger<std::uint8_t>(toDouble());
}

std::int16_t Value::toInt16() const {
    return toInteger<std::int16_t>(toDouble());
}

std::int32_t Value::toInt32() const {
    return toInteger<std::int32_t>(toDouble());
}

float Value::toSingle() const {
    const double value = toDouble();
    if (std::isfinite(value) && std::fabs(value) > double(std::numeric_limits<float>::max()))
        throw Error(errors::Overflow, "Overflow: " + numberText(value) + " is outside a single's range");
    return float(value);
}

std::string Value::toText() const {
    return std::visit(
        [](const auto& v) -> std::string {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, Null>)
                throw Error(errors::InvalidNull);
            else if constexpr (std::is_same_v<T, std::string>)
                return v;
            else if constexpr (std::is_same_v<T, bool>)
                return v ? "True" : "False";
            else if constexpr (std::is_same_v<T, float>)
                return numberText(double(v), 7);
            else if constexpr (std::is_same_v<T, double>)
                return numberText(v);
            else
                return std::to_string(v);
        },
        storage_);
}

template<>
Value Value::to<Value>() const {
    return *this;
}
template<>
bool Value::to<bool>() const {
    return toBool();
}
template<>
std::uint8_t Value::to<std::uint8_t>() const {
    return toByte();
}
template<>
std::int16_t Value::to<std::int16_t>() const {
    return toInt16();
}
template<>
std::int32_t Value::to<std::int32_t>() const {
    return toInt32();
}
template<>
float Value::to<float>() const {
    return toSingle();
}
template<>
double Value::to<double>() const {
    return toDouble();
}
template<>
std::string Value::to<std::string>() const {
    return toText();
}

std::string numberText(double value, int digits) {
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value < 0 ? "-Inf" : "Inf";
    if (value == 0)
        return "0";

    // Scientific form "d.dddde±xx" gives the digits and the decimal exponent.
    char buffer[64];
    const auto end = std::to_chars(
        buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::scientific, digits - 1)
                         .ptr;
    const std::string_view scientific(buffer, std::size_t(end - buffer));
    const auto mark = scientific.find('e');
    int exponent = 0;
    const char* exponentText = scientific.data() + mark + 1 + (scientific[mark + 1] == '+');
    std::from_chars(exponentText, end, exponent);
    std::string significant(1, scientific[0]);
    if (mark > 1)
        significant += scientific.substr(2, mark - 2);
    significant.erase(significant.find_last_not_of('0') + 1);

    const std::string& point = numberLocale().decimalPoint;
    const int count = int(significant.size());
    const int decimals = std::max(0, count - 1 - exponent);
    std::string text = value < 0 ? "-" : "";
    if (exponent >= digits || decimals > digits) {
        text += significant.substr(0, 1);
        if (count > 1)
            text += point + significant.substr(1);
        const int magnitude = std::abs(exponent);
        text += exponent < 0 ? "E-" : "E+";
        text += (magnitude < 10 ? "0" : "") + std::to_string(magnitude);
    } else if (exponent < 0) {
        text += "0" + point + std::string(std::size_t(-exponent - 1), '0') + significant;
    } else if (count <= exponent + 1) {
        text += significant + std::string(std::size_t(exponent + 1 - count), '0');
    } else {
        text += significant.substr(0, std::size_t(exponent + 1)) + point +
                significant.substr(std::size_t(exponent + 1));
    }
    return text;
}

std::string withPoint(std::string_view text) {
    std::string plain(text);
    const std::string& point = numberLocale().decimalPoint;
    if (const auto at = plain.find(point); at != std::string::npos)
        plain.replace(at, point.size(), ".");
    return plain;
}

std::optional<double> wholeNumber(std::string_view text) {
    // Most texts of a list have no digit, and are not copied.
    if (text.find_first_of("0123456789") == std::string_view::npos)
        return std::nullopt;
    const std::string plain = withPoint(text);
    if (plain.find_first_not_of("+-.0123456789eE") != std::string::npos)
        return std::nullopt;
    const bool hasPlus = plain.starts_with('+') && !plain.starts_with("+-");
    const char* const end = plain.data() + plain.size();
    double number = 0;
    const auto [stop, fault] = std::from_chars(plain.data() + (hasPlus ? 1 : 0), end, number);
    return fault == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

double leadingNumber(std::string_view text) {
    std::string plain;
    for (const char c : text)
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n')
            plain += c;
    const bool plus = !plain.empty() && plain[0] == '+';
    double value = 0;
    const char* first = plain.data() + (plus ? 1 : 0);
    // from_chars reads "inf" and "nan"; neither is a number to a surveyor.
    const std::size_t letter = plain.find_first_not_of("+-");
    if (letter == std::string::npos || (plain[letter] != '.' && (plain[letter] < '0' || plain[letter] > '9')))
        return 0;
    std::from_chars(first, plain.data() + plain.size(), value);
    return value;
}

} // namespace genutil
