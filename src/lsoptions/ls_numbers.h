#pragma once

#include "lsoptions/ls_option_table.h"

#include <string>
#include <string_view>

// Numbers as the option dialogs read and write them.
namespace genutil {

// The leading number of a text, blanks ignored, 0 without one. A point is the decimal separator whatever the
// locale, and so is the locale's own: what was formatted in the locale reads as what it shows.
double lsValueOf(std::string_view text);

// Whether the text is a number as a whole, as lsValueOf() reads it.
bool lsIsNumber(std::string_view text);

// Whether the text begins with a number that is too large, or too small, for a double.
bool lsIsBeyondDoubles(std::string_view text);

// The number that the text is as a whole. TypeMismatch, naming the option and the text, for any other text.
double lsNumberIn(const LSOption& option, const std::string& text);

// The value in the option's own type. The error names the option.
template<class T>
T lsMemberValue(const LSOption& option, const Value& value) {
    try {
        return value.to<T>();
    } catch (const Error& error) {
        throw Error(error.number(), "The option " + std::string(option.name()) + ": " + error.description());
    }
}

// What the option does, with its unit.
std::string lsToolTip(const LSOption& option);

} // namespace genutil
