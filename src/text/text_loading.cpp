#include "text/text_loading.h"

#include "text/detect_encoding.h"
#include "text/transcode.h"

#include <algorithm>
#include <limits>
#include <new>

namespace genutil::text {

namespace {

// Read at once, and looked at while it is still in the processor's cache.
constexpr std::size_t readSize = std::size_t{256} * 1024;

constexpr std::size_t spareRoom = std::size_t{4} * 1024;

} // namespace

TextLoading::TextLoading(
    std::uint64_t expectedSize, const CodePages& pages, const std::optional<std::string>& wanted)
    : pages_(pages), wanted_(wanted) {
    if (expectedSize > std::numeric_limits<std::uint64_t>::max() - spareRoom)
        throw std::bad_alloc();
    // With room for what a log gains meanwhile, and for finding its end.
    text_.bytes.reserve(expectedSize + spareRoom);
}

void TextLoading::readAll(ByteSource& source) {
    for (;;) {
        const std::span<char> room = text_.bytes.room();
        const std::size_t count = source.read(room.first(std::min(room.size(), readSize)));
        if (count == 0)
            return;
        text_.bytes.keep(count);
        look(false);
    }
}

void TextLoading::append(std::string_view bytes) {
    for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), readSize))) {
        text_.bytes.append(bytes.substr(0, readSize));
        look(false);
    }
}

void TextLoading::look(bool complete) {
    if (!encoding_ && (complete || text_.bytes.view().size() >= utf16EvidenceSize))
        takeFront();
    if (!encoding_ || encoding_->name != encodings::utf8)
        return;
    const bool damageIsKept = encoding_->mark || wanted_;
    if (damageIsKept || scanner_.isValidUtf8())
        scanner_.scan(text_.bytes.view(), complete);
}

void TextLoading::takeFront() {
    const std::string_view front = text_.bytes.view();
    const auto isMarked = [&](std::string_view name) {
        return !byteOrderMark(name).empty() && front.starts_with(byteOrderMark(name));
    };
    if (wanted_) {
        encoding_ = {ownEncoding(*wanted_) != nullptr ? ownEncoding(*wanted_) : *wanted_, isMarked(*wanted_)};
    } else {
        // The longer marks come last: that of UTF-32 begins as that of UTF-16 does.
        for (const char* name : {encodings::utf8, encodings::utf16LittleEndian, encodings::utf16BigEndian,
                 encodings::utf32LittleEndian, encodings::utf32BigEndian})
            if (isMarked(name))
                encoding_ = {name, true};
        if (!encoding_) {
            const char* utf16 = utf16WithoutMark(front);
            encoding_ = {utf16 != nullptr ? utf16 : encodings::utf8, false};
        }
    }
    text_.begin = encoding_->mark ? byteOrderMark(encoding_->name).size() : 0;
    scanner_ = LineScanner(text_.begin);
}

void TextLoading::decode() {
    const std::string_view bytes = text_.bytes.view().substr(text_.begin);
    std::optional<DecodedText> decoded;
    if (encoding_->name == encodings::utf8) {
        DetectedText detected = detectAndDecode(bytes, pages_);
        encoding_->name = std::move(detected.encoding);
        decoded = std::move(detected.decoded);
    } else {
        decoded = decodeText(encoding_->name, bytes, pages_);
    }
    if (!decoded)
        refuseEncoding(encoding_->name);
    text_.decoded = std::move(decoded->text);
    text_.exact = decoded->exact;
    text_.tail = std::move(decoded->tail);
    text_.begin = 0;
    if (text_.exact)
        text_.bytes = {};
    scanner_ = LineScanner();
    scanner_.scan(*text_.decoded, true);
}

LoadedText TextLoading::finish() {
    look(true);
    const bool isUtf8 =
        encoding_->name == encodings::utf8 && (encoding_->mark || wanted_ || scanner_.isValidUtf8());
    if (!isUtf8)
        decode();
    text_.encoding = std::move(*encoding_);
    text_.starts = scanner_.takeStarts();
    text_.widest = scanner_.widest();
    text_.lineEnd = scanner_.commonestLineEnd();
    return std::move(text_);
}

} // namespace genutil::text
