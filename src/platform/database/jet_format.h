#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// How a Jet file stores its tables. All numbers in it are little-endian.
namespace genutil::jet {

// What is wrong with the file, for the sentence "'path' is damaged: what".
struct Damage {
    std::string what;
};

enum class Version { Jet3, Jet4 };

// Where things stand in a page, a table's definition and a field's entry in it; in bytes.
struct Layout {
    std::size_t pageSize;
    std::size_t rowCount; // in a page of rows; the rows' places follow
    // In a definition:
    std::size_t recordCount;
    std::size_t variableCount;
    std::size_t fieldCount;
    std::size_t indexCount;
    std::size_t map;
    std::size_t indexes, indexSize; // the fields' entries follow, then their names
    std::size_t lengthSize;         // of a name's length
    // In a field's entry. The number is given when the field is made and never changes; the field's position
    // among the others, which a table designer may change, stands 4 bytes further on and is not needed.
    std::size_t fieldNumber;
    std::size_t fieldVariable;
    std::size_t fieldScale; // decimals of a Decimal
    std::size_t fieldFlags;
    std::size_t fieldOffset;
    std::size_t fieldLength; // of what it stores, in bytes
    std::size_t fieldSize;   // of the entry
};
inline constexpr Layout layout3{2048, 8, 12, 23, 25, 31, 35, 43, 8, 1, 1, 3, 10, 13, 14, 16, 18};
inline constexpr Layout layout4{4096, 12, 16, 43, 45, 51, 55, 63, 12, 2, 5, 7, 12, 15, 21, 23, 25};

// The first byte of a page.
inline constexpr char pageOfRows = 1;
inline constexpr char pageOfDefinition = 2;

enum class Kind : int {
    Boolean = 1,
    Byte = 2,
    Int16 = 3,
    Int32 = 4,
    Money = 5,
    Single = 6,
    Double = 7,
    DateTime = 8,
    Binary = 9,
    Text = 10,
    Ole = 11,
    Memo = 12, // hyperlinks are memos
    Guid = 15,
    Decimal = 16,
    Complex = 18,
};

// What a field of the kind is called, and how many bytes it takes; 0 where that differs.
struct KindOfField {
    Kind kind;
    std::string_view name;
    std::size_t size;
    bool isRead;
};
inline constexpr std::array kindsOfField{
    KindOfField{Kind::Boolean, "Yes/No", 0, true},
    KindOfField{Kind::Byte, "Byte", 1, true},
    KindOfField{Kind::Int16, "Integer", 2, true},
    KindOfField{Kind::Int32, "Long Integer", 4, true},
    KindOfField{Kind::Money, "Currency", 8, true},
    KindOfField{Kind::Single, "Single", 4, true},
    KindOfField{Kind::Double, "Double", 8, true},
    KindOfField{Kind::DateTime, "Date/Time", 8, true},
    KindOfField{Kind::Binary, "Binary", 0, false},
    KindOfField{Kind::Text, "Text", 0, true},
    KindOfField{Kind::Ole, "OLE Object", 0, false},
    KindOfField{Kind::Memo, "Memo", 0, true},
    KindOfField{Kind::Guid, "Replication ID", 16, true},
    KindOfField{Kind::Decimal, "Decimal", 17, true},
    KindOfField{Kind::Complex, "Complex", 4, false},
};

struct Column {
    std::string name;
    Kind kind{};            // may be another number than those above
    std::size_t number = 0; // its bit in the null mask
    bool isFixed = false;
    std::size_t offset = 0;   // of a fixed column: bytes behind the record's field count
    std::size_t length = 0;   // of a fixed text: bytes
    int scale = 0;            // of a Decimal
    std::size_t variable = 0; // of another one: its place among the variable ones
};

struct Table {
    std::uint32_t page = 0;
    bool hasVariableColumns = false;
    std::vector<Column> columns;
};

// Where a record or a piece of a long text stands: the page in the upper 24 bits, the row in the lowest 8.
using Pointer = std::uint32_t;
inline constexpr std::uint32_t pageOf(Pointer pointer) {
    return pointer >> 8;
}
inline constexpr std::size_t rowOf(Pointer pointer) {
    return pointer & 0xFF;
}

// The unsigned number of `size` bytes, at most 8, at `offset`. Throws Damage when it does not lie within
// `bytes`.
inline std::uint64_t numberAt(std::string_view bytes, std::size_t offset, std::size_t size) {
    if (offset > bytes.size() || bytes.size() - offset < size)
        throw Damage{"a number lies outside its record"};
    std::uint64_t number = 0;
    for (std::size_t i = size; i-- > 0;)
        number = number << 8 | static_cast<unsigned char>(bytes[offset + i]);
    return number;
}
inline std::uint32_t number32At(std::string_view bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(numberAt(bytes, offset, 4));
}

} // namespace genutil::jet
