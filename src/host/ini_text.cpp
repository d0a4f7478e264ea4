#include "host/ini_text.h"

#include "host/automation_values.h"

#include <QStringDecoder>

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace kestal {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t\r";
constexpr std::string_view generalSection = "General"; // of keys before the first section

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    return first == text.npos ? std::string_view()
                              : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Takes the hexadecimal number at `at`, at most `longest` digits, as UTF-8; `at` moves behind it. False where
// there is none.
bool appendCharacter(std::string& text, std::string_view from, std::size_t& at, std::size_t longest) {
    std::size_t end = at;
    while (end < from.size() && end - at < longest && isHexDigit(from[end]))
        ++end;
    unsigned code = 0;
    std::from_chars(from.data() + at, from.data() + end, code, 16);
    if (end == at)
        return false;
    text += QString(QChar(static_cast<char16_t>(code))).toStdString();
    at = end;
    return true;
}

// Letters, digits, "_", "-" and "." stand for themselves, "\" for the "/" of a key, %XX for all others.
std::string encodedName(std::string_view name) {
    std::string text;
    for (const char c : name) {
        const bool isPlain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                             c == '_' || c == '-' || c == '.';
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(c));
        text += c == '/' ? std::string("\\") : isPlain ? std::string(1, c) : std::string(code);
    }
    return text;
}

std::string decodedName(std::string_view name) {
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        unsigned code = 0;
        if (name[i] == '%' && i + 2 < name.size() && isHexDigit(name[i + 1]) && isHexDigit(name[i + 2])) {
            std::from_chars(name.data() + i + 1, name.data() + i + 3, code, 16);
            text += static_cast<char>(code);
            i += 2;
        } else {
            text += name[i] == '\\' ? '/' : name[i];
        }
    }
    return text;
}

// A text that begins with "@" gets another one: with a single "@" other programs mark values of other types.
std::string encodedValue(std::string_view value) {
    const bool isQuoted = trimmed(value).size() != value.size() || value.find_first_of(";,=") != value.npos;
    std::string text = value.starts_with('@') ? "@" : "";
    bool afterCode = false;
    for (const char c : value) {
        char code[8];
        const auto byte = static_cast<unsigned char>(c);
        // A digit behind a code would become part of it.
        const bool needsCode = byte < 0x20 || byte == 0x7F || (afterCode && isHexDigit(c));
        std::snprintf(code, sizeof code, "\\x%x", byte);
        if (c == '"' || c == '\\')
            text += std::string("\\") + c;
        else if (c == '\n' || c == '\r' || c == '\t')
            text += c == '\n' ? "\\n" : c == '\r' ? "\\r" : "\\t";
        else
            text += needsCode ? std::string(code) : std::string(1, c);
        afterCode = needsCode && c != '\n' && c != '\r' && c != '\t';
    }
    return isQuoted ? '"' + text + '"' : text;
}

std::string decodedValue(std::string_view raw) {
    constexpr std::string_view letters = "nrt\"\\";
    constexpr std::string_view meanings = "\n\r\t\"\\";
    std::string text;
    raw = trimmed(raw);
    for (std::size_t i = 0; i < raw.size();) {
        const char c = raw[i++];
        if (c == '"')
            continue;
        const auto letter = c == '\\' && i < raw.size() ? letters.find(raw[i]) : letters.npos;
        if (letter != letters.npos) {
            text += meanings[letter];
            ++i;
        } else if (c == '\\' && i < raw.size() && raw[i] == 'x') {
            ++i;
            if (constexpr std::size_t longestCode = 4; !appendCharacter(text, raw, i, longestCode))
                text += "\\x";
        } else {
            text += c;
        }
    }
    return text.starts_with("@@") ? text.substr(1) : text;
}

void requireUtf8(const std::string& text, std::string_view section, std::string_view key) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString decoded = decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    if (decoder.hasError())
        throw ConversionError(DISP_E_TYPEMISMATCH, "the value of " + std::string(key) + " in section " +
                                                       std::string(section) + " must be UTF-8 text");
}

} // namespace

IniText::IniText(const std::string& bytes) {
    if (bytes.find('\0') != bytes.npos)
        fault_ = "it must be a text file";
    std::string section(generalSection);
    std::string_view rest = bytes;
    for (std::size_t number = 1; !rest.empty(); ++number) {
        const auto end = rest.find('\n');
        Line line{std::string(rest.substr(0, end)), section, {}, 0, false};
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
        parseLine(line, number);
        section = line.section;
        lines_.push_back(std::move(line));
    }
    if (!lines_.empty() && lines_[0].text.ends_with('\r'))
        lineEnd_ = "\r";
}

void IniText::parseLine(Line& line, std::size_t number) {
    std::string_view content = line.text;
    if (number == 1 && content.starts_with(byteOrderMark))
        content.remove_prefix(byteOrderMark.size());
    content = trimmed(content);
    if (content.empty() || content[0] == ';' || content[0] == '#')
        return;
    const auto sign = line.text.find('=');
    if (content[0] == '[' && content.back() == ']') {
        // "%General" is how a section of that name is told from the keys before the first section.
        const std::string_view name = trimmed(content.substr(1, content.size() - 2));
        line.section = decodedName(name == "%General" ? generalSection : name);
        line.beginsSection = true;
    } else if (sign != line.text.npos && content[0] != '[' && content[0] != '=') {
        const auto begin = static_cast<std::size_t>(content.data() - line.text.data());
        line.key = decodedName(trimmed(std::string_view(line.text).substr(begin, sign - begin)));
        line.valueBegin = sign + 1;
    } else if (fault_.empty()) {
        fault_ = "its line " + std::to_string(number) + " must be a [section], key=value or a comment";
    }
}

// Of a key that is given twice the last one holds.
const IniText::Line* IniText::find(std::string_view section, std::string_view key) const {
    const auto found = std::find_if(lines_.rbegin(), lines_.rend(),
        [&](const Line& line) { return !line.key.empty() && line.key == key && line.section == section; });
    return found == lines_.rend() ? nullptr : &*found;
}

std::optional<std::string> IniText::value(std::string_view section, std::string_view key) const {
    const Line* const line = find(section, key);
    if (!line)
        return std::nullopt;
    std::string text = decodedValue(std::string_view(line->text).substr(line->valueBegin));
    requireUtf8(text, section, key);
    return text;
}

bool IniText::set(std::string_view section, std::string_view key, std::string_view value) {
    const std::string assigned = encodedValue(value);
    if (const Line* const line = find(section, key)) {
        const std::string raw = line->text.substr(line->valueBegin);
        if (decodedValue(raw) == value)
            return false;
        auto& text = lines_[static_cast<std::size_t>(line - lines_.data())].text;
        text.replace(line->valueBegin, text.npos, assigned + (raw.ends_with('\r') ? "\r" : ""));
        return true;
    }
    Line added{encodedName(key) + '=', std::string(section), std::string(key), 0, false};
    added.valueBegin = added.text.size();
    added.text += assigned + lineEnd_;
    // Behind the last line of the section that is not blank.
    const auto last = std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) {
        return line.section == section && (!line.key.empty() || line.beginsSection);
    });
    if (last != lines_.rend()) {
        lines_.insert(last.base(), std::move(added));
    } else {
        if (!lines_.empty())
            lines_.push_back({lineEnd_, lines_.back().section, {}, 0, false});
        const std::string name = section == generalSection ? "%General" : encodedName(section);
        lines_.push_back({'[' + name + ']' + lineEnd_, std::string(section), {}, 0, true});
        lines_.push_back(std::move(added));
    }
    return true;
}

std::string IniText::bytes() const {
    std::string all;
    for (const Line& line : lines_)
        all += line.text + '\n';
    return all;
}

} // namespace kestal
