#include "platform/database/jet_pages.h"

#include <utility>

// The library's header needs the names of this one outside its own block of C declarations.
#include <glib.h>

#include <mdbtools.h>

namespace genutil::jet {
namespace {

constexpr std::string_view signature("\0\1\0\0Standard Jet DB\0", 20);
constexpr std::size_t versionByte = 20;
constexpr std::uint32_t fewestPages = 3;     // header, page map, catalogue
constexpr std::uint64_t mostPages = 1 << 24; // a pointer has 24 bits for the page

// What stands in the place of the key in a file whose pages are not encoded: the header itself always is.
constexpr std::size_t keyPlace = 0x3E;
constexpr std::string_view noKey = "\xFB\x8A\xBC\x4E";
static_assert(keyPlace + noKey.size() <= DatabaseFile::headSize);

} // namespace

// The library takes 15 microseconds to open a file, and the pages that a list needs of a usual job are read
// in 9: it opens encoded files only.
struct Pages::Decoder {
    struct Close {
        void operator()(MdbHandle* open) const { mdb_close(open); }
    };
    std::unique_ptr<MdbHandle, Close> handle;
};

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
    if (head.compare(keyPlace, noKey.size(), noKey) == 0)
        return;
    decoder_ = std::make_unique<Decoder>();
    decoder_->handle.reset(mdb_open(file_.secondName().c_str(), MDB_NOFLAGS));
    if (!decoder_->handle || static_cast<std::size_t>(decoder_->handle->fmt->pg_size) != pageSize)
        notADatabase(path(), "its first page cannot be read");
}

Pages::~Pages() = default;

std::string Pages::read(std::uint32_t number) {
    std::string bytes(layout().pageSize, '\0');
    // The library would complain on the standard error stream of a file that was cut.
    bool isRead = file_.readAt(std::uint64_t{number} * bytes.size(), bytes);
    if (isRead && decoder_) {
        MdbHandle* const mdb = decoder_->handle.get();
        isRead = mdb_read_pg(mdb, number) == static_cast<ssize_t>(bytes.size());
        bytes.assign(reinterpret_cast<const char*>(mdb->pg_buf), bytes.size());
    }
    if (!isRead)
        throw Damage{"page " + std::to_string(number) + " cannot be read"};
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
