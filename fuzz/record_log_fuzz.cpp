// Any bytes may stand in a log of edits: what is read of it is repeated on a text, which must stay whole.

#include "platform/system/record_log_file.h"
#include "text/edit_record.h"

#include <cstdint>
#include <cstdlib>

using namespace genutil;

namespace {

// As the text itself finds them, whose index the edits have kept up to date.
void requireWhole(const text::TextDocument& document) {
    const std::string bytes = document.bytes(0, document.size());
    const auto again = text::TextDocument::fromBytes(bytes, text::basicCodePages(), text::encodings::utf8);
    if (again.size() == bytes.size() && again.lineCount() != document.lineCount())
        std::abort();
    for (std::size_t i = 0; i < document.lineCount(); ++i)
        if (document.offsetOf({i, 0}) + document.line(i).size() > document.size())
            std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const std::string& record : recordsOf(bytes))
        if (const auto edit = text::decodeRecord(record);
            edit && text::decodeRecord(encodeRecord(*edit)) != edit)
            std::abort();
    // Without the checks, which few inputs pass: a length in a byte before each record.
    auto document = text::TextDocument::fromBytes("one\r\ntwo\nthree \xE4\rfour");
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = std::uint8_t(bytes[at]);
        if (const auto edit = text::decodeRecord(bytes.substr(at + 1).substr(0, length)))
            repeat(document, *edit, text::basicCodePages());
        at += 1 + length;
    }
    requireWhole(document);
    return 0;
}
