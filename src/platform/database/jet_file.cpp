#include "platform/database/jet_file.h"

#include <algorithm>

// The library's header needs the names of this one outside its own block of C declarations.
#include <glib.h>

#include <mdbtools.h>
#include <sys/stat.h>

namespace genutil::jet {
namespace {

constexpr std::string_view signature("\0\1\0\0Standard Jet DB\0", 20);
constexpr std::size_t versionByte = 20;
constexpr std::uint32_t fewestPages = 3;     // header, page map, catalogue
constexpr std::uint64_t mostPages = 1 << 24; // a pointer has 24 bits for the page
constexpr std::size_t mostColumns = 255;
constexpr std::uint32_t mostIndexes = 128; // four times what a table can have
constexpr int mostDefinitionPages = 64;
constexpr int mostMoves = 4; // of a row: an update moves it once
constexpr std::uint16_t deletedRow = 0x8000;
constexpr std::uint16_t movedRow = 0x4000;
constexpr std::uint16_t rowPlace = 0x1FFF;

struct FreeTable {
    void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};

Column toColumn(const MdbColumn& from) {
    Column column;
    column.name = from.name;
    column.kind = static_cast<Kind>(from.col_type);
    column.number = static_cast<std::size_t>(std::max(from.row_col_num, 0));
    column.isFixed = from.is_fixed != 0;
    column.offset = static_cast<std::size_t>(std::max(from.fixed_offset, 0));
    column.variable = from.var_col_num;
    return column;
}

} // namespace

struct File::Library {
    struct Close {
        void operator()(MdbHandle* open) const { mdb_close(open); }
    };
    std::unique_ptr<MdbHandle, Close> handle;
};

struct File::Row {
    std::string_view bytes;
    bool isDeleted;
    bool isMoved;
};

File::File(const DatabaseFile& file) : path_(file.path()), library_(std::make_unique<Library>()) {
    const std::string& head = file.head();
    if (head.size() <= versionByte || !head.starts_with(signature))
        notADatabase(path_, "it does not begin as one");
    const char version = head[versionByte];
    if (version != MDB_VER_JET3 && version != MDB_VER_JET4)
        notADatabase(path_, "only Jet formats 3 and 4 are read");
    version_ = version == MDB_VER_JET3 ? Version::Jet3 : Version::Jet4;
    pageSize_ = version_ == Version::Jet3 ? 2048 : 4096;
    const std::uint64_t pages = file.size() / pageSize_;
    if (file.size() % pageSize_ != 0 || pages < fewestPages || pages > mostPages)
        notADatabase(path_, "its " + std::to_string(file.size()) + " bytes are not the pages of one");
    pageCount_ = static_cast<std::uint32_t>(pages);
    library_->handle.reset(mdb_open(file.secondName().c_str(), MDB_NOFLAGS));
    if (!library_->handle || static_cast<std::size_t>(library_->handle->fmt->pg_size) != pageSize_)
        notADatabase(path_, "its first page cannot be read");
}

File::~File() = default;

std::string File::page(std::uint32_t number) {
    if (number == 0 || number >= pageCount_)
        throw Damage{"it refers to page " + std::to_string(number) + " of " + std::to_string(pageCount_)};
    MdbHandle* mdb = library_->handle.get();
    // Asked first whether the file was cut: the library would complain on the standard error stream.
    struct stat status {};
    const bool isThere = ::fstat(::fileno(mdb->f->stream), &status) == 0 &&
                         static_cast<std::uint64_t>(status.st_size) / pageSize_ > number;
    if (!isThere || mdb_read_pg(mdb, number) != mdb->fmt->pg_size)
        throw Damage{"page " + std::to_string(number) + " cannot be read"};
    return std::string(reinterpret_cast<const char*>(mdb->pg_buf), pageSize_);
}

File::Row File::rowOn(std::string_view page, std::size_t index) const {
    const std::size_t count = library_->handle->fmt->row_count_offset;
    if (index >= numberAt(page, count, 2))
        throw Damage{"it refers to a row that is not there"};
    const auto entry = static_cast<std::uint16_t>(numberAt(page, count + 2 + 2 * index, 2));
    const std::size_t begin = entry & rowPlace;
    const std::size_t end = index == 0 ? page.size() : numberAt(page, count + 2 * index, 2) & rowPlace;
    if (begin > end || end > page.size())
        throw Damage{"a row does not lie within its page"};
    return {page.substr(begin, end - begin), (entry & deletedRow) != 0, (entry & movedRow) != 0};
}

std::string File::row(Pointer pointer) {
    return follow(pointer, mostMoves);
}

// A row that was moved is marked as deleted where it stands now, so that it is met only through its first
// place.
std::string File::follow(Pointer pointer, int moves) {
    const std::string bytes = page(pageOf(pointer));
    if (bytes[0] != MDB_PAGE_DATA)
        throw Damage{"page " + std::to_string(pageOf(pointer)) + " holds no rows"};
    const Row found = rowOn(bytes, rowOf(pointer));
    if (!found.isMoved)
        return std::string(found.bytes);
    if (moves == 0)
        throw Damage{"a record is moved in a circle"};
    return follow(number32At(found.bytes, 0), moves - 1);
}

// The definition without the heads of the pages behind its first.
std::string File::wholeDefinition(std::uint32_t number) {
    constexpr std::size_t headSize = 8;
    std::string whole = page(number);
    if (whole[0] != MDB_PAGE_TABLE)
        throw Damage{"page " + std::to_string(number) + " holds no table's definition"};
    std::uint32_t next = number32At(whole, 4);
    for (int pages = 1; next != 0; ++pages) {
        if (pages > mostDefinitionPages)
            throw Damage{"a table's definition has no end"};
        const std::string more = page(next);
        next = number32At(more, 4);
        whole.append(more, headSize);
    }
    return whole;
}

// What the library trusts when it reads a definition: its counts of columns and indexes, its two maps, and
// that it goes on to the last column's name.
void File::checkDefinition(std::string_view definition) {
    const MdbFormatConstants& at = *library_->handle->fmt;
    const std::size_t columns = numberAt(definition, at.tab_num_cols_offset, 2);
    if (columns > mostColumns)
        throw Damage{"a table has more than " + std::to_string(mostColumns) + " fields"};
    const std::size_t indexes = number32At(definition, at.tab_num_ridxs_offset);
    if (number32At(definition, at.tab_num_idxs_offset) > mostIndexes || indexes > mostIndexes)
        throw Damage{"a table has more than " + std::to_string(mostIndexes) + " indexes"};
    for (const std::uint16_t map : {at.tab_usage_map_offset, at.tab_free_map_offset})
        if (row(number32At(definition, map)).empty())
            throw Damage{"a table has no map of its pages"};
    const std::size_t lengthSize = version_ == Version::Jet3 ? 1 : 2;
    std::size_t name =
        at.tab_cols_start_offset + indexes * at.tab_ridx_entry_size + columns * at.tab_col_entry_size;
    for (std::size_t i = 0; i < columns; ++i)
        name += lengthSize + numberAt(definition, name, lengthSize);
    if (name > definition.size())
        throw Damage{"a table's definition ends within a field's name"};
}

Table File::readTable(std::uint32_t number) {
    checkDefinition(wholeDefinition(number));
    MdbCatalogEntry entry{};
    entry.mdb = library_->handle.get();
    entry.object_type = MDB_TABLE;
    entry.table_pg = number;
    const std::unique_ptr<MdbTableDef, FreeTable> read(mdb_read_table(&entry));
    if (!read || !mdb_read_columns(read.get()))
        throw Damage{"a table's definition cannot be read"};
    Table table;
    table.page = number;
    table.hasVariableColumns = read->num_var_cols > 0;
    for (guint i = 0; i < read->columns->len; ++i)
        table.columns.push_back(
            toColumn(*static_cast<const MdbColumn*>(g_ptr_array_index(read->columns, i))));
    return table;
}

std::int32_t File::recordCount(std::uint32_t number) {
    const std::uint32_t count =
        number32At(wholeDefinition(number), library_->handle->fmt->tab_num_rows_offset);
    return static_cast<std::int32_t>(std::min<std::uint32_t>(count, INT32_MAX));
}

// Bit n set: page `first` + n belongs to the table. Pages come in rising order, so none comes twice.
void File::addPages(std::vector<std::uint32_t>& pages, std::string_view bits, std::uint64_t first) const {
    for (std::size_t i = 0; i < bits.size(); ++i)
        for (unsigned bit = 0; bit < 8; ++bit) {
            if ((static_cast<unsigned char>(bits[i]) >> bit & 1) == 0)
                continue;
            const std::uint64_t number = first + i * 8 + bit;
            if (number >= pageCount_)
                throw Damage{"a table is said to be on page " + std::to_string(number)};
            pages.push_back(static_cast<std::uint32_t>(number));
        }
}

// The map is either the bits themselves or a list of pages that hold them.
std::vector<std::uint32_t> File::dataPages(std::string_view definition) {
    const std::string map = row(number32At(definition, library_->handle->fmt->tab_usage_map_offset));
    std::vector<std::uint32_t> pages;
    if (numberAt(map, 0, 1) == 0) {
        const std::uint32_t first = number32At(map, 1);
        addPages(pages, std::string_view(map).substr(5), first);
        return pages;
    }
    if (map[0] != 1)
        throw Damage{"a table's map is of an unknown kind"};
    const std::uint64_t pagesOfOne = (pageSize_ - 4) * 8;
    for (std::size_t i = 0; 5 + i * 4 <= map.size(); ++i)
        if (const std::uint32_t bits = number32At(map, 1 + i * 4))
            addPages(pages, std::string_view(page(bits)).substr(4), i * pagesOfOne);
    return pages;
}

void File::forEachRecord(const Table& table, const std::function<void(std::string_view)>& see) {
    std::uint64_t seen = 0;
    for (const std::uint32_t number : dataPages(page(table.page))) {
        const std::string bytes = page(number);
        // A page that the table gave back can stay on the map.
        if (bytes[0] != MDB_PAGE_DATA || number32At(bytes, 4) != table.page)
            continue;
        const std::uint64_t rows = numberAt(bytes, library_->handle->fmt->row_count_offset, 2);
        for (std::size_t i = 0; i < rows; ++i) {
            const Row found = rowOn(bytes, i);
            if (found.isDeleted)
                continue;
            const std::string moved = found.isMoved ? follow(number32At(found.bytes, 0), mostMoves - 1) : "";
            const std::string_view record = found.isMoved ? moved : found.bytes;
            seen += record.size();
            if (seen > size())
                throw Damage{"many records are moved to one place"};
            see(record);
        }
    }
}

} // namespace genutil::jet
