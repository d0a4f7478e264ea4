#pragma once

#include <string>

namespace genutil {

// A file of the listed folder that could not be read.
struct UnreadFile {
    std::string name;
    std::string
        reason; // what is wrong with it, as it was first said: "Field 'Zone': '55 north' is not a number"
};

} // namespace genutil
