#include "platform/system/failures.h"

#include "hostif/error.h"

#include <cerrno>
#include <system_error>

namespace genutil {

void fail(const std::string& step, const std::string& path) {
    const int reason = errno;
    const std::system_error failure(reason, std::generic_category(), step + " '" + path + "'");
    switch (reason) {
    case EDQUOT:
        throw Error(errors::DiskFull, failure.what());
    case ELOOP:
    case EBUSY:
    case ETXTBSY:
        throw Error(errors::PathAccess, failure.what());
    default:
        throw toError(std::make_exception_ptr(failure));
    }
}

void refuse(const std::string& path, const std::string& isNot, const std::string& rule) {
    throw Error(errors::PathAccess, "'" + path + "' is not " + isNot + ": " + rule);
}

void checkName(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos)
        throw Error(errors::BadFileName, "The name of a file must not be empty or contain a zero byte");
}

} // namespace genutil
