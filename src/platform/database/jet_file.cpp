#include "platform/database/jet_file.h"

#include "platform/database/jet_text.h"

#include <algorithm>

namespace genutil::jet {
namespace {

constexpr std::size_t mostColumns = 255;
constexpr int mostDefinitionPages = 64;
constexpr int mostMoves = 4; // of a row: an update moves it once
constexpr std::uint16_t deletedRow = 0x8000;
constexpr std::uint16_t movedRow = 0x4000;
constexpr std::uint16_t rowPlace = 0x1FFF;
constexpr std::uint64_t fixedFlag = 1;

} // namespace

struct File::Row {
    std::string_view bytes;
    bool isDeleted;
    bool isMoved;
};

File::Row File::rowOn(std::string_view page, std::size_t index) const {
    const std::size_t count = layout().rowCount;
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
    const Page bytes = pages_.at(pageOf(pointer));
    if (bytes->front() != pageOfRows)
        throw Damage{"page " + std::to_string(pageOf(pointer)) + " holds no rows"};
    const Row found = rowOn(*bytes, rowOf(pointer));
    if (!found.isMoved)
        return std::string(found.bytes);
    if (moves == 0)
        throw Damage{"the places of a moved record form a loop"};
    return follow(number32At(found.bytes, 0), moves - 1);
}

Page File::definitionPage(std::uint32_t number) {
    Page found = pages_.at(number);
    if (found->front() != pageOfDefinition)
        throw Damage{"page " + std::to_string(number) + " holds no table's definition"};
    return found;
}

// The definition without the heads of the pages behind its first.
std::string File::wholeDefinition(std::uint32_t number) {
    constexpr std::size_t headSize = 8;
    std::string whole = *definitionPage(number);
    std::uint32_t next = number32At(whole, 4);
    for (int pages = 1; next != 0; ++pages) {
        if (pages > mostDefinitionPages)
            throw Damage{"a table's definition has no end"};
        const Page more = pages_.at(next);
        next = number32At(*more, 4);
        whole.append(*more, headSize);
    }
    return whole;
}

Table File::readTable(std::uint32_t number) {
    const Layout& at = layout();
    const std::string definition = wholeDefinition(number);
    const std::size_t fields = numberAt(definition, at.fieldCount, 2);
    if (fields > mostColumns)
        throw Damage{"a table has more than " + std::to_string(mostColumns) + " fields"};
    const std::size_t indexes = number32At(definition, at.indexCount);
    std::size_t entry = at.indexes + indexes * at.indexSize;
    std::size_t name = entry + fields * at.fieldSize;
    Table table;
    table.page = number;
    table.hasVariableColumns = numberAt(definition, at.variableCount, 2) > 0;
    table.columns.resize(fields);
    for (Column& column : table.columns) {
        const std::size_t length = numberAt(definition, name, at.lengthSize);
        name += at.lengthSize;
        if (definition.size() - name < length)
            throw Damage{"a table's definition ends within a field's name"};
        column.name = decodeText(std::string_view(definition).substr(name, length), version());
        column.kind = static_cast<Kind>(numberAt(definition, entry, 1));
        column.number = numberAt(definition, entry + at.fieldNumber, 2);
        column.isFixed = (numberAt(definition, entry + at.fieldFlags, 1) & fixedFlag) != 0;
        column.offset = numberAt(definition, entry + at.fieldOffset, 2);
        column.scale = static_cast<int>(numberAt(definition, entry + at.fieldScale, 1));
        column.length = numberAt(definition, entry + at.fieldLength, 2);
        column.variable = numberAt(definition, entry + at.fieldVariable, 2);
        entry += at.fieldSize;
        name += length;
    }
    return table;
}

std::int32_t File::recordCount(std::uint32_t number) {
    const std::uint32_t count = number32At(*definitionPage(number), layout().recordCount);
    return static_cast<std::int32_t>(std::min<std::uint32_t>(count, INT32_MAX));
}

// Bit n set: page `first` + n belongs to the table. Pages come in rising order, so none comes twice.
void File::addPages(std::vector<std::uint32_t>& pages, std::string_view bits, std::uint64_t first) const {
    for (std::size_t i = bits.find_first_not_of('\0'); i < bits.size();
         i = bits.find_first_not_of('\0', i + 1))
        for (unsigned bit = 0; bit < 8; ++bit) {
            if ((static_cast<unsigned char>(bits[i]) >> bit & 1) == 0)
                continue;
            const std::uint64_t number = first + i * 8 + bit;
            if (number >= pages_.count())
                throw Damage{"a table is said to be on page " + std::to_string(number)};
            pages.push_back(static_cast<std::uint32_t>(number));
        }
}

// The map is either the bits themselves or a list of pages that hold them.
std::vector<std::uint32_t> File::dataPages(std::uint32_t definition) {
    const std::string map = row(number32At(*definitionPage(definition), layout().map));
    std::vector<std::uint32_t> pages;
    if (numberAt(map, 0, 1) == 0) {
        const std::uint32_t first = number32At(map, 1);
        addPages(pages, std::string_view(map).substr(5), first);
        return pages;
    }
    if (map[0] != 1)
        throw Damage{"a table's map is of an unknown kind"};
    const std::uint64_t pagesOfOne = (layout().pageSize - 4) * 8;
    for (std::size_t i = 0; 5 + i * 4 <= map.size(); ++i)
        if (const std::uint32_t bits = number32At(map, 1 + i * 4))
            addPages(pages, std::string_view(*pages_.at(bits)).substr(4), i * pagesOfOne);
    return pages;
}

void File::forEachRecord(const Table& table, const std::function<void(std::string_view)>& see) {
    std::uint64_t seen = 0;
    for (const std::uint32_t number : dataPages(table.page)) {
        const Page held = pages_.at(number);
        const std::string_view bytes = *held;
        // A page that the table gave back can stay on the map.
        if (bytes[0] != pageOfRows || number32At(bytes, 4) != table.page)
            continue;
        const std::uint64_t rows = numberAt(bytes, layout().rowCount, 2);
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
