#include "text/edit_record.h"

#include "text/little_endian.h"

#include <stdexcept>

namespace genutil::text {

// Kind and joining in a byte each, two numbers of eight, the inserted bytes.
constexpr std::size_t offsetAt = 2, removedAt = 10, insertedAt = 18;

std::string encodeRecord(const EditRecord& record) {
    std::string bytes{char(record.kind), char(record.joined)};
    appendNumber(bytes, record.offset);
    appendNumber(bytes, record.removed);
    return bytes += record.inserted;
}

std::optional<EditRecord> decodeRecord(std::string_view bytes) {
    if (bytes.size() < insertedAt || bytes[0] < char(EditRecord::Kind::Splice) ||
        bytes[0] > char(EditRecord::Kind::Encoding) || (bytes[1] & ~1) != 0)
        return std::nullopt;
    return EditRecord{EditRecord::Kind(bytes[0]), bytes[1] == 1, numberAt(bytes, offsetAt),
        numberAt(bytes, removedAt), std::string(bytes.substr(insertedAt))};
}

bool repeat(TextDocument& document, const EditRecord& record, const CodePages& pages) {
    try {
        switch (record.kind) {
        case EditRecord::Kind::Splice:
            if (!record.joined)
                document.endUndoStep();
            document.splice(
                record.offset, record.removed, record.inserted, TextDocument::Joining::WithPrevious);
            return true;
        case EditRecord::Kind::Undo:
            return document.undo().has_value();
        case EditRecord::Kind::Redo:
            return document.redo().has_value();
        case EditRecord::Kind::Encoding:
            document = document.reinterpreted(record.inserted, pages);
            return true;
        }
    } catch (const std::out_of_range&) {
    } catch (const std::invalid_argument&) {
    } catch (const UnencodableCharacter&) {
    }
    return false;
}

} // namespace genutil::text
