#include "platform/database/memory/facts.h"

#include "text/little_endian.h"

#include <bit>
#include <type_traits>

namespace genutil::memory {
namespace {

constexpr std::uint8_t missingField = 0xFF; // in the place of a value's type

class Writer {
public:
    void flag(bool value) { text::appendNumber(bytes_, std::uint8_t(value)); }
    void byte(std::uint8_t value) { text::appendNumber(bytes_, value); }
    void number(std::int32_t value) { text::appendNumber(bytes_, static_cast<std::uint32_t>(value)); }
    void string(std::string_view value) {
        text::appendNumber(bytes_, static_cast<std::uint32_t>(value.size()));
        bytes_ += value;
    }
    void value(const Value& value) {
        byte(static_cast<std::uint8_t>(value.storage().index()));
        std::visit(
            [this]<class T>(const T& held) {
                if constexpr (std::is_same_v<T, std::string>)
                    string(held);
                else if constexpr (std::is_same_v<T, float>)
                    text::appendNumber(bytes_, std::bit_cast<std::uint32_t>(held));
                else if constexpr (std::is_same_v<T, double>)
                    text::appendNumber(bytes_, std::bit_cast<std::uint64_t>(held));
                else if constexpr (std::is_same_v<T, bool>)
                    flag(held);
                else if constexpr (!std::is_same_v<T, Null>)
                    text::appendNumber(bytes_, static_cast<std::make_unsigned_t<T>>(held));
            },
            value.storage());
    }
    std::string take() { return std::move(bytes_); }

private:
    std::string bytes_;
};

struct NotFacts {};

// Throws NotFacts where the bytes end too early or say what cannot be.
class Reader {
public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    template<std::unsigned_integral Number>
    Number unsignedNumber() {
        return text::numberAt<Number>(take(sizeof(Number)), 0);
    }
    bool flag() { return unsignedNumber<std::uint8_t>() != 0; }
    std::int32_t number() { return static_cast<std::int32_t>(unsignedNumber<std::uint32_t>()); }
    std::string string() { return std::string(take(unsignedNumber<std::uint32_t>())); }
    // Of things that take a byte at least.
    std::size_t count() {
        const std::size_t count = unsignedNumber<std::uint32_t>();
        if (count > bytes_.size())
            throw NotFacts();
        return count;
    }
    Value value(std::uint8_t type) {
        switch (type) {
        case 0:
            return Null();
        case 1:
            return flag();
        case 2:
            return unsignedNumber<std::uint8_t>();
        case 3:
            return static_cast<std::int16_t>(unsignedNumber<std::uint16_t>());
        case 4:
            return number();
        case 5:
            return std::bit_cast<float>(unsignedNumber<std::uint32_t>());
        case 6:
            return std::bit_cast<double>(unsignedNumber<std::uint64_t>());
        case 7:
            return string();
        default:
            throw NotFacts();
        }
    }
    bool isAtEnd() const { return bytes_.empty(); }

private:
    std::string_view take(std::size_t length) {
        if (length > bytes_.size())
            throw NotFacts();
        const std::string_view taken = bytes_.substr(0, length);
        bytes_.remove_prefix(length);
        return taken;
    }

    std::string_view bytes_;
};

static_assert(std::variant_size_v<Value::Storage> == 8, "Reader::value() knows all types");

TableFacts readTable(Reader& reader) {
    TableFacts table{reader.string(), std::nullopt};
    if (reader.flag())
        table.recordCount = reader.number();
    return table;
}

FieldFacts readField(Reader& reader) {
    FieldFacts field{reader.string(), {}};
    const auto type = reader.unsignedNumber<std::uint8_t>();
    if (type == missingField)
        field.value = reader.string();
    else
        field.value = reader.value(type);
    return field;
}

RecordFacts readRecord(Reader& reader) {
    RecordFacts record;
    record.table = reader.string();
    record.recordCount = reader.number();
    record.isBof = reader.flag();
    record.isEof = reader.flag();
    record.fields.resize(reader.count());
    for (FieldFacts& field : record.fields)
        field = readField(reader);
    return record;
}

} // namespace

std::string encode(const Facts& facts) {
    Writer writer;
    writer.flag(facts.mayHaveLog);
    writer.number(static_cast<std::int32_t>(facts.tables.size()));
    for (const TableFacts& table : facts.tables) {
        writer.string(table.name);
        writer.flag(table.recordCount.has_value());
        if (table.recordCount)
            writer.number(*table.recordCount);
    }
    writer.flag(facts.record.has_value());
    if (!facts.record)
        return writer.take();
    writer.string(facts.record->table);
    writer.number(facts.record->recordCount);
    writer.flag(facts.record->isBof);
    writer.flag(facts.record->isEof);
    writer.number(static_cast<std::int32_t>(facts.record->fields.size()));
    for (const FieldFacts& field : facts.record->fields) {
        writer.string(field.name);
        if (const auto* value = std::get_if<Value>(&field.value)) {
            writer.value(*value);
        } else {
            writer.byte(missingField);
            writer.string(std::get<std::string>(field.value));
        }
    }
    return writer.take();
}

std::optional<Facts> decode(std::string_view bytes) {
    try {
        Reader reader(bytes);
        Facts facts;
        facts.mayHaveLog = reader.flag();
        facts.tables.resize(reader.count());
        for (TableFacts& table : facts.tables)
            table = readTable(reader);
        if (reader.flag())
            facts.record = readRecord(reader);
        if (reader.isAtEnd())
            return facts;
    } catch (const NotFacts&) {
    }
    return std::nullopt;
}

} // namespace genutil::memory
