#pragma once

#include "platform/database/jet_format.h"

#include <string>
#include <string_view>

namespace genutil::jet {

// A stored text as UTF-8: code page 1252 in format 3; UTF-16 in format 4, plain or compressed. A surrogate
// without its partner becomes three bytes.
std::string decodeText(std::string_view bytes, Version version);

} // namespace genutil::jet
