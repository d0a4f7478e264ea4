#include "text/detect_encoding.h"

#include "text/ascii.h"

#include <algorithm>
#include <bitset>

namespace genutil::text {

namespace {

bool isHigh(char byte) {
    return static_cast<unsigned char>(byte) >= 0x80;
}

// What a guess is made from: the lines with bytes beyond ASCII, as the rest says nothing.
constexpr std::size_t sampleSize = std::size_t{64} * 1024;
constexpr std::size_t longestSampleLine = std::size_t{4} * 1024;

std::string sampleOf(std::string_view bytes) {
    const auto isLineEnd = [](char byte) { return byte == '\n' || byte == '\r'; };
    std::string sample;
    for (std::size_t at = 0; at < bytes.size() && sample.size() < sampleSize;) {
        const auto high = std::find_if(bytes.begin() + std::ptrdiff_t(at), bytes.end(), isHigh);
        if (high == bytes.end())
            break;
        const auto place = std::size_t(high - bytes.begin());
        std::size_t begin = place;
        while (begin > at && place - begin < longestSampleLine / 2 && !isLineEnd(bytes[begin - 1]))
            --begin;
        std::size_t end = place;
        while (end < bytes.size() && end - begin < longestSampleLine && !isLineEnd(bytes[end]))
            ++end;
        sample.append(bytes.substr(begin, end - begin)).push_back('\n');
        at = end;
    }
    return sample;
}

// How much a sample says about its encoding.
struct Evidence {
    std::size_t high = 0;     // bytes beyond ASCII
    std::size_t adjacent = 0; // of them, those beside another one
    std::size_t distinct = 0; // different ones

    explicit Evidence(std::string_view sample) {
        std::bitset<256> seen;
        for (std::size_t i = 0; i < sample.size(); ++i) {
            if (!isHigh(sample[i]))
                continue;
            ++high;
            seen.set(static_cast<unsigned char>(sample[i]));
            if ((i > 0 && isHigh(sample[i - 1])) || (i + 1 < sample.size() && isHigh(sample[i + 1])))
                ++adjacent;
        }
        distinct = seen.count();
    }
};

// A survey text in a Western language holds a handful of bytes beyond ASCII: degree signs, plus-minus,
// superscripts, an umlaut in a name. They are few and different, or many and always the same, and stand alone
// between ASCII; a guess on them is a throw of dice, and the system code page is the better bet. A
// single-byte guess goes by which letters follow each other in a language, for which some dozens of words are
// needed. A double-byte text shows by its form alone: its bytes come in pairs, which nearly all must be
// defined.
bool bearsOut(const Evidence& evidence, std::size_t charactersBeyondAscii) {
    const bool doubleByte = charactersBeyondAscii < evidence.high;
    if (doubleByte)
        return evidence.high >= 8 && evidence.distinct >= 4 && evidence.adjacent * 2 > evidence.high;
    return evidence.high >= 64 && evidence.distinct >= 8;
}

std::size_t countBeyondAscii(std::string_view utf8) {
    return std::size_t(std::ranges::count_if(utf8, [](char byte) { return (byte & 0xC0) == 0xC0; }));
}

// A text has no use for the control characters from 0x80 to 0x9F of the standard's sets; those of Windows
// have letters and quotation marks there, and are taken for the standard's by guesses that go by the other
// letters.
struct Twins {
    const char* standard;
    const char* windows;
};
constexpr Twins twins[] = {{"ISO-8859-2", "windows-1250"}, {"ISO-8859-4", "windows-1257"},
    {"ISO-8859-5", "windows-1251"}, {"ISO-8859-6", "windows-1256"}, {"ISO-8859-7", "windows-1253"},
    {"ISO-8859-8", "windows-1255"}, {"ISO-8859-9", "windows-1254"}, {"ISO-8859-13", "windows-1257"},
    {"ISO-8859-15", encodings::windows1252}, {"ISO-8859-16", "windows-1250"}};

bool hasBytesOfWindowsOnly(std::string_view sample) {
    return std::ranges::any_of(
        sample, [](char byte) { return (static_cast<unsigned char>(byte) & 0xE0) == 0x80; });
}

// The guess, if it is another encoding than UTF-8 and UTF-16, which the bytes are not, and the sample speaks
// for it.
std::string plausibleGuess(std::string_view bytes, const CodePages& pages) {
    const std::string sample = sampleOf(bytes);
    std::string guess = pages.guess(sample);
    if (equalsIgnoringCase(guess, "ISO-8859-1") || equalsIgnoringCase(guess, "US-ASCII"))
        guess = encodings::windows1252;
    if (hasBytesOfWindowsOnly(sample))
        if (const auto* twin = std::ranges::find_if(
                twins, [&](const Twins& each) { return equalsIgnoringCase(each.standard, guess); });
            twin != std::end(twins))
            guess = twin->windows;
    if (guess.empty() || !byteOrderMark(guess).empty())
        return "";
    const auto decoded = decodeText(guess, sample, pages);
    return decoded && bearsOut(Evidence(sample), countBeyondAscii(decoded->text)) ? guess : "";
}

} // namespace

const char* utf16WithoutMark(std::string_view front) {
    front = front.substr(0, utf16EvidenceSize);
    const std::size_t units = front.size() / 2;
    std::size_t zeros[2] = {};
    for (std::size_t i = 0; i < 2 * units; ++i)
        zeros[i % 2] += front[i] == '\0' ? 1 : 0;
    const auto isHighHalf = [&](std::size_t half) {
        return units >= 2 && zeros[half] * 8 >= units * 7 && zeros[1 - half] * 8 <= units;
    };
    if (isHighHalf(1))
        return encodings::utf16LittleEndian;
    return isHighHalf(0) ? encodings::utf16BigEndian : nullptr;
}

DetectedText detectAndDecode(std::string_view bytes, const CodePages& pages) {
    for (const std::string& name : {plausibleGuess(bytes, pages), pages.systemCodePage()}) {
        if (name.empty() || !byteOrderMark(name).empty())
            continue;
        if (auto decoded = decodeText(name, bytes, pages); decoded && decoded->exact)
            return {ownEncoding(name) != nullptr ? ownEncoding(name) : name, std::move(*decoded)};
    }
    return {encodings::windows1252, *decodeText(encodings::windows1252, bytes, basicCodePages())};
}

} // namespace genutil::text
