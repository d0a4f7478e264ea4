#pragma once

#include <string_view>

namespace genutil {

// Whether two names of tables or fields are the same: letters are compared without regard to case.
bool isSameName(std::string_view a, std::string_view b);

} // namespace genutil
