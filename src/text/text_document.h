#pragma once

#include "text/byte_stream.h"
#include "text/encoding.h"
#include "text/line_index.h"
#include "text/text_position.h"
#include "text/unencodable_character.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace genutil::text {

// The text of a report: held in memory as UTF-8, with an index of its lines, edited through a piece table, so
// that an edit costs the same in a text of any size. LF, CR LF and a lone CR end a line, and every line keeps
// its own.
class TextDocument {
public:
    // An empty text.
    TextDocument();
    ~TextDocument();
    TextDocument(TextDocument&&) noexcept;
    TextDocument& operator=(TextDocument&&) noexcept;

    // Reads the source to its end, once. Without a wanted encoding a byte-order mark tells it; then zero
    // bytes in nearly every other place, UTF-16; then strict UTF-8; then what `pages` guesses, if the bytes
    // bear it out; then its system code page; and windows-1252 for what is no text in that. With one, the
    // bytes are taken as that, come what may; what is no character in it shows as U+FFFD. Damage in a marked
    // or wanted UTF-8 stays as it is, and so do surrogates of UTF-16 without partner, in three bytes each.
    // Throws what reading met; std::invalid_argument for an encoding that is not known; std::bad_alloc.
    static TextDocument load(ByteSource& source, const CodePages& pages = basicCodePages(),
        const std::optional<std::string>& wantedEncoding = std::nullopt);
    static TextDocument fromBytes(std::string bytes, const CodePages& pages = basicCodePages(),
        const std::optional<std::string>& wantedEncoding = std::nullopt);

    // One more than there are line ends: an empty text has one (empty) line, and a text that ends in a line
    // end has an empty last line.
    std::size_t lineCount() const;

    // A line in UTF-8 without its line end. Valid until the document is changed or destroyed, or until a few
    // more edited lines have been asked for (keptLines). Throws std::out_of_range when index is not below
    // lineCount().
    std::string_view line(std::size_t index) const;
    static constexpr std::size_t keptLines = 64;

    // Whole lines that lie together in memory, with the line ends between them.
    struct Stretch {
        std::uint64_t offset = 0; // of its first byte in the text
        std::size_t firstLine = 0;
        std::size_t lines = 0;
        std::string_view text;
    };
    // The longest one that the line is part of: all of a text that was not edited. Valid as line()'s.
    Stretch stretchAt(std::size_t line) const;

    // Columns as columnsOf() counts them; the first of equally wide lines. Once the widest line has been made
    // narrower, what is given is still a width that no line exceeds.
    WidestLine widestLine() const;

    // The place behind the last character.
    TextPosition end() const;
    // Bytes of the text in UTF-8, line ends included, byte-order mark excluded.
    std::uint64_t size() const;
    // Bytes of the text before the place, line ends included, and back. A place past its line's end counts as
    // the line's end, an offset past the text as its end.
    std::uint64_t offsetOf(TextPosition position) const;
    TextPosition positionAt(std::uint64_t offset) const;
    // What lies in the range, line ends as they are or all as `lineEnd`.
    std::string text(const TextRange& range) const;
    std::string text(const TextRange& range, std::string_view lineEnd) const;

    // The line end that new lines get: the commonest of the text as read, "\n" where it has none.
    std::string_view lineEnd() const;

    // Whether an edit may continue the one before, so that both are undone together. One does that inserts
    // where the last one's insertion ended, or that only deletes, forward or backward from where the last one
    // only deleted; a line end that is inserted begins a step.
    enum class Joining { Alone, WithPrevious };

    // Puts `text` (UTF-8; any line ends, which become lineEnd()) in the place of the range. Places past a
    // line's end count as the line's end; a place inside a character counts as that character's start.
    TextChange replace(const TextRange& range, std::string_view text, Joining joining = Joining::Alone);
    // Nothing when there is no edit to undo or to redo.
    std::optional<TextChange> undo();
    std::optional<TextChange> redo();
    bool canUndo() const;
    bool canRedo() const;
    // How many steps can be undone.
    std::size_t undoDepth() const;
    // The next edit joins none before it.
    void endUndoStep();

    // What the last edit, undoing or redoing has done, in bytes of the text.
    struct Done {
        enum class Kind { Edit, Undo, Redo };
        Kind kind = Kind::Edit;
        bool joined = false; // an edit that became part of the step before
        std::uint64_t offset = 0;
        std::uint64_t removed = 0;
        std::uint64_t inserted = 0;
    };
    const Done& lastDone() const;
    // Bytes of the text; the two must lie in it.
    std::string bytes(std::uint64_t offset, std::uint64_t length) const;
    // Puts the bytes, UTF-8 with the line ends that they have, in the place of others, as an edit that has
    // been done before. Throws std::out_of_range for what does not lie in the text.
    void splice(std::uint64_t offset, std::uint64_t removed, std::string_view inserted, Joining joining);

    // Whether the text differs from what was read or last saved. Undoing back to that counts as no
    // difference.
    bool isEdited() const;
    void markSaved();

    const Encoding& encoding() const;
    void setEncoding(Encoding encoding);
    // Whether writing gives back every byte that was read. False when a double-byte file holds sequences that
    // its encoding does not or not uniquely define.
    bool isExact() const;
    // The bytes that writing would give, read in another encoding: a new document without edits to undo.
    // Throws as write() and load().
    TextDocument reinterpreted(const std::string& encodingName, const CodePages& pages) const;

    // Hands the text to `sink` in its encoding, byte-order mark first. A text that has not been edited is
    // written as the bytes it was read from. Throws UnencodableCharacter before anything is handed over, and
    // what the sink throws.
    void write(const ByteSink& sink, const CodePages& pages = basicCodePages()) const;

private:
    struct State;
    explicit TextDocument(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

} // namespace genutil::text
