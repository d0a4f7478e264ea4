#pragma once

#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

namespace genutil {

// The error numbers that the component raises or tests. The host sees them as HRESULT 0x800A0000 + number.
namespace errors {
inline constexpr int InvalidCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int OutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int InternalError = 51;
inline constexpr int BadFileName = 52;
inline constexpr int FileNotFound = 53;
inline constexpr int DeviceError = 57;
inline constexpr int FileExists = 58;
inline constexpr int DiskFull = 61;
inline constexpr int TooManyFiles = 67;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathAccess = 75;
inline constexpr int PathNotFound = 76;
inline constexpr int ObjectNotSet = 91;
inline constexpr int InvalidNull = 94;
inline constexpr int ObjectRequired = 424;
inline constexpr int CannotCreateObject = 429;
inline constexpr int NoSuchMember = 438;
inline constexpr int AutomationError = 440;
inline constexpr int NoCurrentRecord = 3021;
inline constexpr int ReadOnlyDatabase = 3027;
inline constexpr int RecordDeleted = 3167;
inline constexpr int RecordChanged = 3197;
inline constexpr int TableNotFound = 3078;
inline constexpr int DatabaseLocked = 3260;
inline constexpr int ItemNotFound = 3265;
inline constexpr int UnrecognisedDatabase = 3343;
inline constexpr int DialogCancelled = 32755;
} // namespace errors

// The standard description of an error number; a neutral sentence naming the number for one without its own.
std::string standardDescription(int number);

// An error as the product knows it: a number, what went wrong, and the qualified name of the procedure it
// came from.
class Error : public std::runtime_error {
public:
    explicit Error(int number, std::string description = {}, std::string source = {});

    int number() const { return number_; }
    const std::string& source() const { return source_; }
    std::string description() const { return what(); }

private:
    int number_;
    std::string source_;
};

// The exception as an Error. Exceptions of the standard library keep their text and get the nearest number
// (file errors by their error code); an exception of any other type becomes InternalError. Never throws but
// bad_alloc.
Error toError(const std::exception_ptr& exception);

} // namespace genutil
