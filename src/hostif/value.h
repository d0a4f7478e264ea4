#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace genutil {

struct Null {
    friend bool operator==(Null, Null) { return true; }
};

// How numbers are written for the user: both one character, as UTF-8. A number text is read with the same
// two.
struct NumberLocale {
    std::string decimalPoint = ".";
    std::string groupSeparator = ",";
};

// The running user's number locale. The desktop sets it once at start; the default is a point and a comma.
const NumberLocale& numberLocale();
void setNumberLocale(NumberLocale locale);

// A value of a host property or a database field, with the product's ordinary conversions:
//  - to an integer: fractions go to the nearest integer, halves to the even neighbour; outside the range:
//  Overflow;
//  - text to a number: blanks around it, a sign, group separators and an exponent are accepted; anything
//  else, the
//    empty text included: TypeMismatch;
//  - a number to text: the shortest text with at most 15 significant digits (7 for a single); see toText;
//  - Boolean to number: True is -1; number to Boolean: not zero;
//  - Null to anything but a Value: InvalidNull.
// Each conversion throws Error.
class Value {
public:
    using Storage =
        std::variant<Null, bool, std::uint8_t, std::int16_t, std::int32_t, float, double, std::string>;

    Value() = default;
    Value(Null) {}
    Value(bool v) : storage_(v) {}
    Value(std::uint8_t v) : storage_(v) {}
    Value(std::int16_t v) : storage_(v) {}
    Value(std::int32_t v) : storage_(v) {}
    Value(float v) : storage_(v) {}
    Value(double v) : storage_(v) {}
    Value(std::string v) : storage_(std::move(v)) {}
    Value(std::string_view v) : storage_(std::string(v)) {}
    Value(const char* v) : storage_(std::string(v)) {}

    bool isNull() const { return std::holds_alternative<Null>(storage_); }
    bool isText() const { return std::holds_alternative<std::string>(storage_); }
    const Storage& storage() const { return storage_; }

    bool toBool() const;
    std::uint8_t toByte() const;
    std::int16_t toInt16() const;
    std::int32_t toInt32() const;
    float toSingle() const;
    double toDouble() const;
    std::string toText() const;
    std::string toTextOrEmpty() const { return isNull() ? std::string() : toText(); }

    // The conversion chosen by type; T is one of the alternatives of Storage, or Value itself.
    template<class T>
    T to() const;

    friend bool operator==(const Value&, const Value&) = default;

private:
    Storage storage_;
};

// The shortest decimal text of the value with at most `digits` significant digits, decimal separator of the
// locale. Plain notation for magnitudes below 10^digits with at most `digits` decimals, otherwise exponent
// notation
// ("1.5E+20", "1E-16").
std::string numberText(double value, int digits = 15);

// The text with the locale's decimal separator made a point.
std::string withPoint(std::string_view text);

// The number that a text is as a whole, with a point or the locale's decimal separator and without group
// separators; nothing for any other text, blanks and the names of infinities included.
std::optional<double> wholeNumber(std::string_view text);

// The leading number of a text, blanks ignored, a point as the decimal separator whatever the locale; 0
// without one.
double leadingNumber(std::string_view text);

} // namespace genutil
