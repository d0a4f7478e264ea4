#pragma once

#include "frame/component.h"

#include <string>
#include <string_view>

namespace genutil {

// The name as names are compared and ordered: small letters a to z become capitals, and a letter beyond them
// the one character that stands for its two cases.
std::string upperCase(std::string_view name);

// Splits a file name at its first "." and makes the two parts the name and the extension, dot included, of
// the job. A name without a "." changes nothing.
void GetJobnameParts(Component& component, Record& thisJob, const std::string& fileName);

} // namespace genutil
