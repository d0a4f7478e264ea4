#pragma once

#include "hostif/error.h"
#include "platform/database/database_file.h"
#include "platform/database/jet_format.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace genutil::jet {

// The pages of one Jet file and the tables laid out on them. Everything but the constructor throws Damage for
// what contradicts itself in the file, and for a file that was cut while it is read. Not for several threads.
class File {
public:
    // Throws Error UnrecognisedDatabase for a file that is not Jet's or not of whole pages.
    explicit File(const DatabaseFile& file);
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    const std::string& path() const { return path_; }
    Version version() const { return version_; }

    // The definition that starts on the page.
    Table readTable(std::uint32_t page);
    // Each record of the table that is not deleted, in stored order. The bytes last until `see` returns; it
    // may read other rows of the file.
    void forEachRecord(const Table& table, const std::function<void(std::string_view)>& see);
    // The bytes of one row, wherever an update has moved it.
    std::string row(Pointer pointer);
    // The number in the table's definition, read anew.
    std::int32_t recordCount(std::uint32_t page);
    std::uint32_t pageCount() const { return pageCount_; }
    // More bytes than the file has cannot be in any text of it.
    std::uint64_t size() const { return std::uint64_t(pageCount_) * pageSize_; }

private:
    struct Library;
    struct Row;

    std::string page(std::uint32_t number);
    Row rowOn(std::string_view page, std::size_t index) const;
    std::string follow(Pointer pointer, int moves);
    std::string wholeDefinition(std::uint32_t page);
    void checkDefinition(std::string_view definition);
    std::vector<std::uint32_t> dataPages(std::string_view definition);
    void addPages(std::vector<std::uint32_t>& pages, std::string_view bits, std::uint64_t first) const;

    std::string path_;
    Version version_ = Version::Jet4;
    std::size_t pageSize_ = 0;
    std::uint32_t pageCount_ = 0;
    std::unique_ptr<Library> library_;
};

// What `act` returns; Damage becomes Error UnrecognisedDatabase: "'path' is damaged: what".
template<class Act>
auto checked(const File& file, const Act& act) {
    try {
        return act();
    } catch (const Damage& damage) {
        throw Error(errors::UnrecognisedDatabase, "'" + file.path() + "' is damaged: " + damage.what);
    }
}

} // namespace genutil::jet
