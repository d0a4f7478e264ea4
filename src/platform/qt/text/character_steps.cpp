#include "platform/qt/text/character_steps.h"

#include "platform/qt/text/utf16_text.h"
#include "text/utf8.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace genutil {

using text::TextDocument;
using text::TextPosition;
using text::TextRange;

namespace {

constexpr std::size_t reach = 256;       // bytes looked at on either side for the bounds of a character
constexpr std::size_t wordReach = 65536; // bytes that a word is followed for

bool isAscii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}

// Letters and signs that never join a neighbour which is one of them, either: looking closer would tell
// nothing.
bool standsAlone(char32_t character) {
    const auto between = [character](char32_t first, char32_t last) {
        return character >= first && character <= last;
    };
    return character < 0x0300 || between(0x0370, 0x0482) || between(0x2010, 0x2027) ||
           between(0x2030, 0x205E) || between(0x2070, 0x20CF) || between(0x2190, 0x25FF) ||
           between(0x3000, 0x3029) || between(0x3041, 0x3096) || between(0x30A0, 0x30FF) ||
           between(0x4E00, 0x9FFF) || between(0xAC00, 0xD7A3) || between(0xFF01, 0xFF9D);
}

// Whether a character surely starts at the byte, which starts a code point.
bool isPlainStart(std::string_view line, std::size_t byte) {
    return byte == 0 || byte == line.size() ||
           (standsAlone(text::decodeUtf8(line, byte).codePoint) &&
               standsAlone(text::decodeUtf8(line, previousCodePoint(line, byte)).codePoint));
}

bool isContinuation(char byte) {
    return (byte & 0xC0) == 0x80;
}

// The characters around a place, and their bounds.
class Surroundings {
public:
    Surroundings(std::string_view line, std::size_t byte)
        : begin_(codePointStart(line, byte - std::min(byte, reach))),
          text_(line.substr(begin_, codePointStart(line, std::min(line.size(), byte + reach)) - begin_)),
          finder_(QTextBoundaryFinder::Grapheme, text_.text()) {}

    std::size_t next(std::size_t byte) {
        finder_.setPosition(text_.unitOf(byte - begin_));
        return begin_ + text_.byteOf(int(finder_.toNextBoundary()));
    }
    std::size_t previous(std::size_t byte) {
        finder_.setPosition(text_.unitOf(byte - begin_));
        return begin_ + text_.byteOf(int(finder_.toPreviousBoundary()));
    }
    bool isBoundary(std::size_t byte) {
        finder_.setPosition(text_.unitOf(byte - begin_));
        return finder_.isAtBoundary();
    }

private:
    static std::size_t codePointStart(std::string_view line, std::size_t byte) {
        for (int i = 0; i < 3 && byte > 0 && byte < line.size() && isContinuation(line[byte]); ++i)
            --byte;
        return byte;
    }

    std::size_t begin_;
    Utf16Text text_;
    QTextBoundaryFinder finder_;
};

enum class Kind { Blank, Word, Sign };

Kind kindAt(std::string_view line, std::size_t byte) {
    const char32_t character = text::decodeUtf8(line, byte).codePoint;
    if (QChar::isSpace(character))
        return Kind::Blank;
    const bool word = QChar::isLetterOrNumber(character) || QChar::isMark(character) || character == '_';
    return word ? Kind::Word : Kind::Sign;
}

std::size_t skipForward(std::string_view line, std::size_t byte, Kind kind) {
    const std::size_t limit = std::min(line.size(), byte + wordReach);
    while (byte < limit && kindAt(line, byte) == kind)
        byte += text::decodeUtf8(line, byte).length;
    return byte;
}

std::size_t skipBackward(std::string_view line, std::size_t byte, Kind kind) {
    const std::size_t limit = byte - std::min(byte, wordReach);
    while (byte > limit && kindAt(line, previousCodePoint(line, byte)) == kind)
        byte = previousCodePoint(line, byte);
    return byte;
}

TextPosition endOfPreviousLine(const TextDocument& document, TextPosition position) {
    if (position.line == 0)
        return position;
    return {position.line - 1, document.line(position.line - 1).size()};
}

TextPosition startOfNextLine(const TextDocument& document, TextPosition position) {
    return position.line + 1 < document.lineCount() ? TextPosition{position.line + 1, 0} : position;
}

} // namespace

std::size_t previousCodePoint(std::string_view line, std::size_t byte) {
    if (byte == 0)
        return 0;
    std::size_t start = byte - 1;
    for (int i = 0; i < 3 && start > 0 && isContinuation(line[start]); ++i)
        --start;
    // Stray bytes are characters of their own.
    for (auto length = text::decodeUtf8(line, start).length; start + length < byte;
         length = text::decodeUtf8(line, start).length)
        start += length;
    return start;
}

std::size_t nextCharacter(std::string_view line, std::size_t byte) {
    if (byte >= line.size())
        return line.size();
    if (isAscii(line[byte]) && (byte + 1 == line.size() || isAscii(line[byte + 1])))
        return byte + 1;
    if (const std::size_t next = byte + text::decodeUtf8(line, byte).length; isPlainStart(line, next))
        return next;
    return std::max(Surroundings(line, byte).next(byte), byte + 1);
}

std::size_t previousCharacter(std::string_view line, std::size_t byte) {
    if (byte == 0)
        return 0;
    if (const std::size_t before = previousCodePoint(line, byte); isPlainStart(line, before))
        return before;
    return std::min(Surroundings(line, byte).previous(byte), byte - 1);
}

std::size_t characterStart(std::string_view line, std::size_t byte) {
    if (byte == 0 || byte >= line.size() || isAscii(line[byte]))
        return std::min(byte, line.size());
    byte = previousCodePoint(line, byte + 1);
    if (isPlainStart(line, byte))
        return byte;
    Surroundings around(line, byte);
    return around.isBoundary(byte) ? byte : around.previous(byte);
}

TextPosition nextCharacter(const TextDocument& document, TextPosition position) {
    const std::string_view line = document.line(position.line);
    if (position.byte < line.size())
        return {position.line, nextCharacter(line, position.byte)};
    return startOfNextLine(document, position);
}

TextPosition previousCharacter(const TextDocument& document, TextPosition position) {
    if (position.byte > 0)
        return {position.line, previousCharacter(document.line(position.line), position.byte)};
    return endOfPreviousLine(document, position);
}

TextPosition previousCodePoint(const TextDocument& document, TextPosition position) {
    if (position.byte > 0)
        return {position.line, previousCodePoint(document.line(position.line), position.byte)};
    return endOfPreviousLine(document, position);
}

TextPosition nextWord(const TextDocument& document, TextPosition position) {
    const std::string_view line = document.line(position.line);
    if (position.byte >= line.size())
        return startOfNextLine(document, position);
    const Kind kind = kindAt(line, position.byte);
    const std::size_t end = kind == Kind::Blank ? position.byte : skipForward(line, position.byte, kind);
    return {position.line, skipForward(line, end, Kind::Blank)};
}

TextPosition previousWord(const TextDocument& document, TextPosition position) {
    if (position.byte == 0)
        return endOfPreviousLine(document, position);
    const std::string_view line = document.line(position.line);
    const std::size_t end = skipBackward(line, position.byte, Kind::Blank);
    if (end == 0)
        return {position.line, 0};
    return {position.line, skipBackward(line, end, kindAt(line, previousCodePoint(line, end)))};
}

TextRange wordAt(const TextDocument& document, TextPosition position) {
    const std::string_view line = document.line(position.line);
    if (line.empty())
        return {position, position};
    // Behind the last character, that one counts.
    const std::size_t byte =
        position.byte < line.size() ? position.byte : previousCodePoint(line, line.size());
    const Kind kind = kindAt(line, byte);
    return {{position.line, skipBackward(line, byte, kind)}, {position.line, skipForward(line, byte, kind)}};
}

TextRange lineAt(const TextDocument& document, TextPosition position) {
    const bool last = position.line + 1 >= document.lineCount();
    return {{position.line, 0}, last ? document.end() : TextPosition{position.line + 1, 0}};
}

} // namespace genutil
