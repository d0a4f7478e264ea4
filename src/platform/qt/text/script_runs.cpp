#include "platform/qt/text/script_runs.h"

#include "platform/qt/text/character_steps.h"
#include "text/utf8.h"

#include <QChar>

#include <algorithm>

namespace genutil {
namespace {

constexpr std::size_t runSize = 1024;  // bytes that are shaped together at most
constexpr qsizetype composedSize = 32; // UTF-16 units of one character

// Whether the character belongs to a run of a complex script without beginning one.
bool extendsRun(char32_t character) {
    return character == 0x200C || character == 0x200D || QChar::isMark(character);
}

} // namespace

bool isComplex(char32_t character) {
    if (character < 0x0590)
        return false;
    switch (QChar::script(character)) {
    case QChar::Script_Unknown:
    case QChar::Script_Inherited:
    case QChar::Script_Common:
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
    case QChar::Script_Armenian:
    case QChar::Script_Georgian:
    case QChar::Script_Ethiopic:
    case QChar::Script_Cherokee:
    case QChar::Script_Hangul:
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Bopomofo:
    case QChar::Script_Yi:
        return false;
    default:
        return true;
    }
}

std::size_t scriptRunEnd(std::string_view line, std::size_t begin) {
    const std::size_t limit = std::min(line.size(), begin + runSize);
    std::size_t end = begin;
    for (std::size_t at = begin; at < limit;) {
        const auto character = text::decodeUtf8(line, at);
        const bool blank = character.codePoint == ' ' && at == end;
        if (!blank && !isComplex(character.codePoint) && !extendsRun(character.codePoint))
            break;
        if (!blank && at != end && !isComplex(character.codePoint))
            break; // a mark on the blank
        at += character.length;
        if (!blank)
            end = at;
    }
    return end;
}

std::size_t scriptRunStart(std::string_view line, std::size_t byte) {
    std::size_t start = byte;
    bool blankBefore = false;
    for (std::size_t at = byte; at > 0 && byte - at < runSize;) {
        at = previousCodePoint(line, at);
        const char32_t character = text::decodeUtf8(line, at).codePoint;
        const bool blank = character == ' ';
        if (isComplex(character))
            start = at;
        else if (blank ? blankBefore : !extendsRun(character))
            break;
        blankBefore = blank;
    }
    return start;
}

QString composed(std::string_view character) {
    QString text = QString::fromUtf8(character.data(), qsizetype(character.size()));
    if (text.size() > 1) {
        text.truncate(composedSize);
        text = text.normalized(QString::NormalizationForm_C);
    }
    return text;
}

} // namespace genutil
