#include "text/file_bytes.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <new>
#include <string_view>
#include <system_error>

namespace genutil::text {

namespace {

// Memory added when a file proves longer than its size said. The first step is allocated together with the
// size itself, so that a log still being written to is not copied for the sake of its last lines.
constexpr std::size_t growthStep = std::size_t{64} * 1024;

[[noreturn]] void refuse(const std::filesystem::path& path, std::string_view reason, std::error_code code) {
    const std::u8string name = path.u8string();
    throw std::system_error(
        code, "\"" + std::string(name.begin(), name.end()) + "\" cannot be shown: " + std::string(reason));
}

// The error that a stream call left in errno. Streams promise none: an unset one reads as input/output error.
std::error_code lastError() {
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

void requireRegularFile(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(path, error).type();
    switch (type) {
    case std::filesystem::file_type::regular:
        return;
    case std::filesystem::file_type::directory:
        refuse(path, "it is a folder, and only a file has text",
            std::make_error_code(std::errc::is_a_directory));
    case std::filesystem::file_type::not_found:
        refuse(path, "there must be a file of this name",
            std::make_error_code(std::errc::no_such_file_or_directory));
    case std::filesystem::file_type::none:
        refuse(path, "what it is cannot be found out", error);
    default:
        refuse(path, "only a regular file can be read, not a pipe, socket or device",
            std::make_error_code(std::errc::operation_not_supported));
    }
}

std::size_t sizeOf(const std::filesystem::path& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error)
        refuse(path, "its size cannot be read", error);
    if (size > std::string().max_size() - growthStep)
        refuse(path, "a text must fit into memory", std::make_error_code(std::errc::file_too_large));
    return static_cast<std::size_t>(size);
}

// Reads on until the end of the file, however far that is from where its size put it.
std::string readToEnd(std::filebuf& file, std::size_t expectedSize) {
    std::string bytes;
    bytes.reserve(expectedSize + growthStep);
    bytes.resize(expectedSize);
    std::size_t filled = 0;
    for (;;) {
        const auto wanted = static_cast<std::streamsize>(bytes.size() - filled);
        const std::streamsize got = file.sgetn(bytes.data() + filled, wanted);
        filled += static_cast<std::size_t>(std::max<std::streamsize>(got, 0));
        if (filled < bytes.size() || file.sgetc() == std::filebuf::traits_type::eof())
            break;
        bytes.resize(bytes.size() + growthStep);
    }
    bytes.resize(filled);
    return bytes;
}

} // namespace

std::string readFileBytes(const std::filesystem::path& path) {
    requireRegularFile(path);
    const std::size_t size = sizeOf(path);

    errno = 0;
    std::filebuf file;
    file.pubsetbuf(nullptr, 0); // one large read straight into the result, no buffer between
    if (file.open(path, std::ios::in | std::ios::binary) == nullptr)
        refuse(path, "it must be readable for this user", lastError());

    try {
        errno = 0;
        return readToEnd(file, size);
    } catch (const std::bad_alloc&) {
        refuse(path, "a text must fit into memory", std::make_error_code(std::errc::not_enough_memory));
    } catch (const std::ios_base::failure&) {
        refuse(path, "reading it failed", lastError());
    }
}

} // namespace genutil::text
