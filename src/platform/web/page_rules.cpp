#include "platform/web/page_rules.h"

#include "text/ascii.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace genutil {
namespace {

constexpr std::string_view fileScheme = "file:";
constexpr std::string_view hexDigits = "0123456789ABCDEF";

bool isLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

int hexValue(char c) {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

std::string decoded(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low >= 0)
            i += 2;
        bytes += low >= 0 ? char(high * 16 + low) : text[i];
    }
    return bytes;
}

// What may stand in an address as it is, besides letters and digits; in a place within a page what is encoded
// already stays so.
constexpr std::string_view pathMarks = "/-._~", fragmentMarks = "/-._~%!$&'()*+,;=:@?";

std::string encoded(std::string_view text, std::string_view marks) {
    std::string address;
    for (const char c : text) {
        if (isLetterOrDigit(c) || marks.find(c) != std::string_view::npos) {
            address += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            address += {'%', hexDigits[byte >> 4], hexDigits[byte & 15]};
        }
    }
    return address;
}

// Empty when there is no such file, and for a name that no file can have.
std::string canonical(const std::string& path) {
    if (path.empty() || path.find('\0') != path.npos)
        return {};
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : std::string();
}

std::string faultOfFile(const std::string& path) {
    struct stat status {};
    if (path.empty() || ::stat(path.c_str(), &status) != 0)
        return "There is no such file.";
    if (S_ISDIR(status.st_mode))
        return "It is a folder.";
    if (!S_ISREG(status.st_mode))
        return "It is not an ordinary file.";
    if (::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0)
        return "The file may not be read.";
    return {};
}

bool isEmptyFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && status.st_size == 0;
}

// "http:" and the like; one letter is no scheme but a drive.
bool hasScheme(std::string_view name) {
    const auto end = std::ranges::find_if(
        name, [](char c) { return !isLetterOrDigit(c) && c != '+' && c != '-' && c != '.'; });
    return end != name.end() && *end == ':' && end - name.begin() > 1;
}

bool isFileAddress(std::string_view address) {
    return text::equalsIgnoringCase(address.substr(0, fileScheme.size()), fileScheme);
}

} // namespace

NamedPage findPage(const std::string& name) {
    NamedPage page;
    if (name.empty()) {
        page.fault = "No page was named.";
        return page;
    }
    page.file = canonical(name);
    if (page.file.empty() && hasScheme(name)) {
        if (!isFileAddress(name)) {
            page.fault = "Only pages on this computer are shown here.";
            return page;
        }
        page.file = canonical(pathOfAddress(name));
        if (const auto hash = name.find('#'); hash != name.npos)
            page.fragment = name.substr(hash + 1);
    }
    // A path with a place in the page behind it.
    if (const auto hash = name.rfind('#'); page.file.empty() && !hasScheme(name) && hash != name.npos) {
        page.file = canonical(name.substr(0, hash));
        page.fragment = encoded(name.substr(hash + 1), fragmentMarks);
    }
    page.fault = faultOfFile(page.file);
    if (page.fault.empty() && isEmptyFile(page.file))
        page.fault = "The file is empty.";
    return page;
}

std::string pathOfAddress(std::string_view address) {
    if (!isFileAddress(address))
        return {};
    address.remove_prefix(fileScheme.size());
    address = address.substr(0, address.find_first_of("?#"));
    if (address.starts_with("//")) {
        // A file of another computer has that one's name here.
        const auto hostEnd = std::min(address.find('/', 2), address.size());
        const auto host = address.substr(2, hostEnd - 2);
        if (!host.empty() && !text::equalsIgnoringCase(host, "localhost"))
            return {};
        address.remove_prefix(hostEnd);
    }
    return address.starts_with('/') ? decoded(address) : std::string();
}

std::string addressOfPath(std::string_view path) {
    return "file://" + encoded(path, pathMarks);
}

PageFolder::PageFolder(const std::string& pageFile) {
    const std::string page = canonical(pageFile);
    folder_ = page.substr(0, page.find_last_of('/') + 1);
}

std::string PageFolder::faultOf(std::string_view address) const {
    if (!isFileAddress(address))
        return "Only files in the page's own folder are shown.";
    const std::string file = canonical(pathOfAddress(address));
    if (!file.empty() && (folder_.empty() || !(file + '/').starts_with(folder_)))
        return "The file lies outside the page's own folder.";
    return faultOfFile(file);
}

} // namespace genutil
