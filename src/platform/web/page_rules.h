#pragma once

#include <string>
#include <string_view>

namespace genutil {

// Which pages are shown: files of this computer, and with each page the files below its own folder. Nothing
// else is read, and nothing is sent anywhere. Paths are bytes as the system has them; faults are sentences
// for the user.

// A page as somebody has named it: by a file's path, absolute or relative to the working folder, or by an
// address.
struct NamedPage {
    std::string file;     // its canonical path
    std::string fragment; // the place in it that the address names, percent-encoded
    std::string fault;    // why it cannot be shown; empty when it can
};
NamedPage findPage(const std::string& name);

// The path that a file's address names; empty for any other address.
std::string pathOfAddress(std::string_view address);
// The address of the file with this absolute path.
std::string addressOfPath(std::string_view path);

// The folder of a page.
class PageFolder {
public:
    // Of no page: nothing lies in it.
    PageFolder() = default;
    explicit PageFolder(const std::string& pageFile);

    // Why what the address names is not shown; empty when it is a readable regular file in or below the
    // folder once all symbolic links are followed.
    std::string faultOf(std::string_view address) const;

private:
    std::string folder_; // canonical, with a slash at its end; empty for none
};

} // namespace genutil
