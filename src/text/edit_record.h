#pragma once

#include "text/text_document.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace genutil::text {

// An edit so that it can be done again on the same text, by a later process.
struct EditRecord {
    enum class Kind : std::uint8_t { Splice = 1, Undo, Redo, Encoding };
    Kind kind = Kind::Splice;
    bool joined = false; // part of the undo step before
    std::uint64_t offset = 0;
    std::uint64_t removed = 0;
    std::string inserted = {}; // an encoding's name: the text's bytes are read in that from here on
    friend bool operator==(const EditRecord&, const EditRecord&) = default;
};

std::string encodeRecord(const EditRecord& record);
// Nothing for what is no record.
std::optional<EditRecord> decodeRecord(std::string_view bytes);

// False, with the text as it was, when the record does not fit it.
bool repeat(TextDocument& document, const EditRecord& record, const CodePages& pages);

} // namespace genutil::text
