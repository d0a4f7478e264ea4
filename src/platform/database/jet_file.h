#pragma once

#include "hostif/error.h"
#include "platform/database/jet_format.h"
#include "platform/database/jet_pages.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace genutil::jet {

// The tables of one Jet file. Everything but the constructor throws Damage for what contradicts itself in the
// file, and for a file that was cut while it is read. Not for several threads.
class File {
public:
    // Throws Error UnrecognisedDatabase for a file that is not Jet's or not of whole pages.
    explicit File(DatabaseFile file) : pages_(std::move(file)) {}

    const std::string& path() const { return pages_.path(); }
    Version version() const { return pages_.version(); }

    // The definition that starts on the page.
    Table readTable(std::uint32_t page);
    // Each record of the table that is not deleted, in stored order. The bytes last until `see` returns; it
    // may read other rows of the file.
    void forEachRecord(const Table& table, const std::function<void(std::string_view)>& see);
    // The bytes of one row, wherever an update has moved it.
    std::string row(Pointer pointer);
    // The number in the table's definition.
    std::int32_t recordCount(std::uint32_t page);
    std::uint32_t pageCount() const { return pages_.count(); }
    // More bytes than the file has cannot be in any text of it.
    std::uint64_t size() const { return std::uint64_t(pages_.count()) * layout().pageSize; }

private:
    struct Row;

    const Layout& layout() const { return pages_.layout(); }
    Row rowOn(std::string_view page, std::size_t index) const;
    std::string follow(Pointer pointer, int moves);
    Page definitionPage(std::uint32_t page);
    std::string wholeDefinition(std::uint32_t page);
    std::vector<std::uint32_t> dataPages(std::uint32_t definition);
    void addPages(std::vector<std::uint32_t>& pages, std::string_view bits, std::uint64_t first) const;

    Pages pages_;
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
