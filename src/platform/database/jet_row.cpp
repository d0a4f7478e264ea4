#include "platform/database/jet_row.h"

#include "hostif/date.h"
#include "hostif/error.h"
#include "platform/database/jet_text.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <optional>

namespace genutil::jet {
namespace {

// A record: the field count, the fixed fields, the variable ones, where each of these begins (from the end
// backwards), and a mask with a bit for each field that is not Null.
class Record {
public:
    Record(std::string_view bytes, Version version, bool hasVariableFields)
        : bytes_(bytes), version_(version), countSize_(version == Version::Jet3 ? 1 : 2) {
        fields_ = numberAt(bytes, 0, countSize_);
        const std::size_t maskSize = (fields_ + 7) / 8;
        if (bytes.size() < countSize_ + maskSize)
            throw Damage{"a record is too short for its fields"};
        mask_ = bytes.size() - maskSize;
        if (!hasVariableFields)
            return;
        variableFields_ = beforeMask(countSize_, countSize_);
        if (version == Version::Jet3)
            countJumps();
        start(variableFields_); // damage is told even when the fields that are asked for are Null
    }

    bool bit(std::size_t number) const {
        return number < fields_ && (numberAt(bytes_, mask_ + number / 8, 1) >> number % 8 & 1) != 0;
    }
    std::string_view fixed(std::size_t offset, std::size_t size) const {
        return between(countSize_ + offset, countSize_ + offset + size);
    }
    // Nothing for a field that the record does not reach to.
    std::optional<std::string_view> variable(std::size_t place) const {
        if (place >= variableFields_)
            return std::nullopt;
        return between(start(place), start(place + 1));
    }

private:
    std::string_view between(std::size_t begin, std::size_t end) const {
        if (begin > end || end > mask_)
            throw Damage{"a field does not lie within its record"};
        return bytes_.substr(begin, end - begin);
    }
    // The number `back` bytes before the mask.
    std::size_t beforeMask(std::size_t back, std::size_t size) const {
        if (back > mask_)
            throw Damage{"a record is too short for its fields"};
        return numberAt(bytes_, mask_ - back, size);
    }
    // Where a variable field begins, or the last one ends.
    std::size_t start(std::size_t place) const {
        if (version_ == Version::Jet4)
            return beforeMask(4 + 2 * place, 2);
        // A start is one byte. Before the starts stand the jumps: the places from which 256 more is to be
        // added.
        std::size_t used = 0;
        while (used < jumps_ && beforeMask(2 + used, 1) <= place)
            ++used;
        return beforeMask(firstStart_ + place, 1) + used * 256;
    }
    void countJumps() {
        jumps_ = (bytes_.size() - 1) / 256;
        firstStart_ = 2 + jumps_;
        const std::size_t last = firstStart_ + variableFields_;
        if (last <= mask_ && (mask_ - last) / 256 < jumps_)
            --jumps_; // the last jump would lie beyond the last field
    }

    std::string_view bytes_;
    Version version_;
    std::size_t countSize_;
    std::size_t fields_ = 0;
    std::size_t mask_ = 0;
    std::size_t variableFields_ = 0;
    // Of format 3:
    std::size_t jumps_ = 0;
    std::size_t firstStart_ = 0; // back from the mask
};

// A sign and 128 bits, as four words of which the highest comes first. More digits than a double has are
// rounded.
Value decimalValue(std::string_view bytes, int scale) {
    double number = 0;
    for (std::size_t word = 0; word < 4; ++word)
        number = number * 4'294'967'296.0 + number32At(bytes, 1 + word * 4);
    number /= std::pow(10, scale);
    return (bytes[0] & 0x80) != 0 ? -number : number;
}

// "{499480B3-1D6E-4C1B-9B0A-3C1F5F3D0A11}": the first three groups are numbers, the others bytes.
Value guidValue(std::string_view bytes) {
    const auto byte = [&](std::size_t i) { return unsigned(static_cast<unsigned char>(bytes[i])); };
    std::string text(38, '\0');
    std::snprintf(text.data(), text.size() + 1, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
        unsigned(numberAt(bytes, 0, 4)), unsigned(numberAt(bytes, 4, 2)), unsigned(numberAt(bytes, 6, 2)),
        byte(8), byte(9), byte(10), byte(11), byte(12), byte(13), byte(14), byte(15));
    return text;
}

// A date that no calendar has stays the number that it is stored as.
Value dateValue(double days) {
    try {
        return shortMomentText(days);
    } catch (const Error&) {
        return days;
    }
}

Value fixedValue(const Column& column, std::string_view bytes) {
    if (column.kind == Kind::Decimal)
        return decimalValue(bytes, column.scale);
    if (column.kind == Kind::Guid)
        return guidValue(bytes);
    const std::uint64_t bits = numberAt(bytes, 0, bytes.size());
    switch (column.kind) {
    case Kind::Byte:
        return static_cast<std::uint8_t>(bits);
    case Kind::Int16:
        return static_cast<std::int16_t>(bits);
    case Kind::Int32:
        return static_cast<std::int32_t>(bits);
    case Kind::Single:
        return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    case Kind::Money:
        return static_cast<double>(static_cast<std::int64_t>(bits)) / 10'000;
    case Kind::DateTime:
        return dateValue(std::bit_cast<double>(bits));
    default:
        return std::bit_cast<double>(bits);
    }
}

// A long text begins with its length, the place of its first piece and four bytes of the engine's own. The
// two top bits of the length tell where it stands: in the record, in one row, or in a chain of rows.
std::string memoBytes(File& file, std::string_view field) {
    constexpr std::size_t headSize = 12;
    if (field.empty())
        return {};
    const std::uint32_t head = number32At(field, 0);
    const std::size_t length = head & 0x3FFF'FFFF;
    Pointer next = number32At(field, 4);
    if (length > file.size() || field.size() < headSize)
        throw Damage{"a long text lies outside the file"};
    std::string bytes;
    if (head & 0x8000'0000)
        bytes = field.substr(headSize);
    else if (head & 0x4000'0000)
        bytes = file.row(next);
    else
        for (std::uint32_t pieces = 0; bytes.size() < length; ++pieces) {
            if (pieces == file.pageCount()) // each piece fills most of a page
                throw Damage{"the pieces of a long text form a loop"};
            const std::string piece = file.row(next);
            next = number32At(piece, 0);
            bytes.append(piece, 4);
        }
    if (bytes.size() < length)
        throw Damage{"a long text ends too early"};
    bytes.resize(length);
    return bytes;
}

} // namespace

Value fieldOf(File& file, const Table& table, const Column& column, std::string_view bytes) {
    const Record record(bytes, file.version(), table.hasVariableColumns);
    const bool bit = record.bit(column.number);
    if (column.kind == Kind::Boolean)
        return bit; // has no other place
    if (!bit)
        return Null();
    const auto* const known = std::ranges::find(kindsOfField, column.kind, &KindOfField::kind);
    if (known == kindsOfField.end() || !known->isRead)
        throw Error(errors::TypeMismatch,
            "The field '" + column.name + "' of '" + file.path() + "' is of the type " +
                (known == kindsOfField.end() ? "number " + std::to_string(int(column.kind))
                                             : std::string(known->name)) +
                ", which is neither a number nor a text");
    if (column.kind == Kind::Memo && column.isFixed)
        throw Damage{"a long text is said to have a fixed place"};
    const bool isText = column.kind == Kind::Text || column.kind == Kind::Memo;
    // A text of fixed width is padded with blanks, and is given with them.
    const std::optional<std::string_view> field =
        column.isFixed ? record.fixed(column.offset, isText ? column.length : known->size)
                       : record.variable(column.variable);
    if (!field)
        return Null();
    if (!isText && field->size() < known->size)
        throw Damage{"a field is shorter than its type"};
    if (!isText)
        return fixedValue(column, field->substr(0, known->size));
    const auto text = column.kind == Kind::Text ? std::string(*field) : memoBytes(file, *field);
    return decodeText(text, file.version());
}

} // namespace genutil::jet
