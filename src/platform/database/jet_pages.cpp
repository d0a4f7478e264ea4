#include "platform/database/jet_pages.h"

#include "platform/database/jet_cipher.h"

#include <utility>

namespace genutil::jet {
namespace {

constexpr std::string_view signature("\0\1\0\0Standard Jet DB\0", 20);
constexpr std::size_t versionByte = 20;
constexpr std::uint32_t fewestPages = 3;     // header, page map, catalogue
constexpr std::uint64_t mostPages = 1 << 24; // a pointer has 24 bits for the page

// The key of the file's pages stands in its header, XOR a number that is the same in all files; 0 for a file
// that is not enciphered. A password, which also stands there, locks the file for its makers' programs and
// enciphers nothing.
constexpr std::size_t keyPlace = 0x3E;
constexpr std::uint32_t keyMask = 0x4EBC8AFB;
static_assert(keyPlace + sizeof keyMask <= DatabaseFile::headSize);

} // namespace

Pages::Pages(DatabaseFile file) : file_(std::move(file)) {
    const std::string& head = file_.head();
    if (head.size() < DatabaseFile::headSize || !head.starts_with(signature))
        notADatabase(path(), "it does not begin as one");
    const char version = head[versionByte];
    if (version != 0 && version != 1)
        notADatabase(path(), "only Jet formats 3 and 4 are read");
    version_ = version == 0 ? Version::Jet3 : Version::Jet4;
    const std::size_t pageSize = layout().pageSize;
    const std::uint64_t pages = file_.size() / pageSize;
    if (file_.size() % pageSize != 0 || pages < fewestPages || pages > mostPages)
        notADatabase(path(), "its " + std::to_string(file_.size()) + " bytes are not the pages of one");
    count_ = static_cast<std::uint32_t>(pages);
    key_ = number32At(head, keyPlace) ^ keyMask;
}

std::string Pages::read(std::uint32_t number) {
    std::string bytes(layout().pageSize, '\0');
    if (!file_.readAt(std::uint64_t{number} * bytes.size(), bytes))
        throw Damage{"page " + std::to_string(number) + " cannot be read"};
    if (key_ != 0)
        applyCipher(bytes, key_ ^ number);
    return bytes;
}

Page Pages::at(std::uint32_t number) {
    if (number == 0 || number >= count_)
        throw Damage{"it refers to page " + std::to_string(number) + " of " + std::to_string(count_)};
    for (const KeptPage& each : kept_)
        if (each.number == number)
            return each.bytes;
    Page page = std::make_shared<const std::string>(read(number));
    kept_[oldest_] = {number, page};
    oldest_ = (oldest_ + 1) % kept_.size();
    return page;
}

} // namespace genutil::jet
