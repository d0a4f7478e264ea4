#pragma once

#include "frame/component.h"

#include <k_genutil/interfaces.h>
#include <k_genutil/support.h>

#include <array>

namespace genutil {

// One of the component's public classes.
struct PublicClass {
    k_genutil::ClassName name;
    // A new object with one reference, which the caller owns. Throws what the class's creation throws.
    k_genutil::Ref<IUnknown> (*create)(Component& component);
};

extern const std::array<PublicClass, 8> publicClasses;

// The class with the identifier; null for a class that is not the component's.
const PublicClass* findPublicClass(const CLSID& clsid);

} // namespace genutil
