#include "hostif/error.h"

#include <algorithm>
#include <array>
#include <new>
#include <system_error>

namespace genutil {
namespace {

struct Described {
    int number;
    std::string_view text;
};

constexpr std::array descriptions{
    Described{errors::InvalidCall, "Invalid procedure call or argument"},
    Described{errors::Overflow, "Overflow"},
    Described{errors::OutOfMemory, "Out of memory"},
    Described{errors::OutOfRange, "Index out of range"},
    Described{errors::TypeMismatch, "Type mismatch"},
    Described{errors::InternalError, "Internal error"},
    Described{errors::BadFileName, "Bad file name or number"},
    Described{errors::FileNotFound, "File not found"},
    Described{errors::DeviceError, "Device input or output error"},
    Described{errors::FileExists, "File already exists"},
    Described{errors::DiskFull, "Disk full"},
    Described{errors::TooManyFiles, "Too many files are open"},
    Described{errors::PermissionDenied, "Permission denied"},
    Described{errors::PathAccess, "Path or file access error"},
    Described{errors::PathNotFound, "Path not found"},
    Described{errors::ObjectNotSet, "Object reference is not set"},
    Described{errors::InvalidNull, "Invalid use of Null"},
    Described{errors::ObjectRequired, "Object required"},
    Described{errors::CannotCreateObject, "The object cannot be created"},
    Described{errors::NoSuchMember, "The object does not have this property or operation"},
    Described{errors::AutomationError, "Automation error"},
    Described{errors::NoCurrentRecord, "No current record"},
    Described{errors::ReadOnlyDatabase, "The database or the record set is read-only"},
    Described{errors::RecordDeleted, "The record has been deleted"},
    Described{errors::RecordChanged, "The record has been changed by another user"},
    Described{errors::TableNotFound, "The table is not in the database"},
    Described{errors::DatabaseLocked, "The database is locked by another user"},
    Described{errors::ItemNotFound, "The item is not in this collection"},
    Described{errors::UnrecognisedDatabase, "The database format is not recognised"},
    Described{errors::DialogCancelled, "Cancel was chosen"},
};

int numberOf(const std::error_code& code) {
    struct Mapping {
        std::errc condition;
        int number;
    };
    static constexpr std::array mappings{
        Mapping{std::errc::no_such_file_or_directory, errors::FileNotFound},
        Mapping{std::errc::not_a_directory, errors::PathNotFound},
        Mapping{std::errc::permission_denied, errors::PermissionDenied},
        Mapping{std::errc::operation_not_permitted, errors::PermissionDenied},
        Mapping{std::errc::read_only_file_system, errors::PathAccess},
        Mapping{std::errc::is_a_directory, errors::PathAccess},
        Mapping{std::errc::no_space_on_device, errors::DiskFull},
        Mapping{std::errc::file_too_large, errors::DiskFull},
        Mapping{std::errc::file_exists, errors::FileExists},
        Mapping{std::errc::too_many_files_open, errors::TooManyFiles},
        Mapping{std::errc::filename_too_long, errors::BadFileName},
        Mapping{std::errc::not_enough_memory, errors::OutOfMemory},
    };
    const auto match = std::ranges::find_if(mappings, [&](const Mapping& m) { return code == m.condition; });
    return match == mappings.end() ? errors::DeviceError : match->number;
}

} // namespace

std::string standardDescription(int number) {
    const auto entry = std::ranges::find(descriptions, number, &Described::number);
    return entry == descriptions.end() ? "Error number " + std::to_string(number) : std::string(entry->text);
}

Error::Error(int number, std::string description, std::string source)
    : std::runtime_error(description.empty() ? standardDescription(number) : std::move(description)),
      number_(number), source_(std::move(source)) {}

Error toError(const std::exception_ptr& exception) {
    try {
        std::rethrow_exception(exception);
    } catch (const Error& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return Error(errors::OutOfMemory);
    } catch (const std::system_error& error) {
        return Error(numberOf(error.code()), error.what());
    } catch (const std::out_of_range& error) {
        return Error(errors::OutOfRange, error.what());
    } catch (const std::exception& error) {
        return Error(errors::InternalError, error.what());
    } catch (...) {
        return Error(errors::InternalError, "An exception of an unknown type");
    }
}

} // namespace genutil
