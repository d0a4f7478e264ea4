#pragma once

#include "text/line_index.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace genutil::text {

// How the bytes were written before they became UTF-8 in memory.
enum class Encoding { Utf8, Utf8WithMark, Utf16LittleEndian, Utf16BigEndian, Windows1252 };

// The text of a report, held in memory as UTF-8 with an index of its lines.
//
// A byte-order mark tells UTF-16 and UTF-8 and is no part of the text; without one, bytes that are strictly
// valid UTF-8 are UTF-8 and all others Windows-1252 (its five unused bytes become the control characters of
// the same value). A damaged UTF-16 unit, or damaged UTF-8 behind a UTF-8 mark, shows as U+FFFD.
class TextDocument {
public:
    // An empty text.
    TextDocument() : TextDocument(std::string(), 0, Encoding::Utf8) {}

    // Reads the whole file once. Only a regular file (or a link to one) is opened, so a pipe or device cannot
    // block. Throws std::system_error whose what() names the path and the rule; its code compares equal to
    // std::errc::no_such_file_or_directory, is_a_directory, operation_not_supported (pipe, socket, device),
    // permission_denied, file_too_large, not_enough_memory, or the error that opening or reading met.
    static TextDocument read(const std::filesystem::path& path);

    static TextDocument fromBytes(std::string bytes);

    // One more than there are line ends: an empty text has one (empty) line, and a text that ends in a line
    // end has an empty last line.
    std::size_t lineCount() const { return lines_.starts.size(); }

    // A line in UTF-8 without its line end (LF, CR LF or lone CR). Valid until the document is changed, moved
    // or destroyed. Throws std::out_of_range when index is not below lineCount().
    std::string_view line(std::size_t index) const;

    // Columns as columnsOf() counts them; the first of equally wide lines.
    WidestLine widestLine() const { return lines_.widest; }

    Encoding encoding() const { return encoding_; }

private:
    TextDocument(std::string bytes, std::size_t begin, Encoding encoding);

    std::string bytes_; // UTF-8, with the mark of the file still in front of the first line
    LineScan lines_;
    Encoding encoding_;
};

} // namespace genutil::text
