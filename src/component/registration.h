#pragma once

#include <string>

namespace genutil {

// Write and remove the component's own entries in the registry file (k_genutil/activation.h): its classes,
// their programmatic identifiers and the type library, served by the library at `library`. Everything else in
// the file stays byte for byte. The file is replaced as a whole, so that a reader sees the old or the new one
// and a failure changes nothing. Throw Error (PathAccess, PermissionDenied) naming the file and the rule.
void registerServer(const std::string& library);
void unregisterServer();

} // namespace genutil
