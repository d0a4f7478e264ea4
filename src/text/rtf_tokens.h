#pragma once

#include <cstddef>
#include <string_view>

// The parts that a rich-text file is made of.
namespace genutil::text::rtf {

// Which raw bytes begin a double-byte character. The second byte may look like a brace or a backslash.
enum class LeadBytes { None, ShiftJis, Wide };
bool isLeadByte(LeadBytes leads, char byte);

struct Token {
    enum class Kind { End, GroupStart, GroupEnd, Word, Symbol, HexByte, Bytes, Binary };
    Kind kind = Kind::End;
    // Word: its letters. Symbol: its character. Bytes: characters of text, without line ends. Binary: the
    // data.
    std::string_view text;
    int number = 0; // Word: its number, cut to the range of int. HexByte: the byte, -1 without two hex digits
    bool hasNumber = false;

    bool isOn() const { return !hasNumber || number != 0; }
    int numberOr(int usual) const { return hasNumber ? number : usual; }
};

// The value of a hexadecimal digit, -1 for any other character.
int hexValue(char digit);

class Tokenizer {
public:
    explicit Tokenizer(std::string_view bytes) : bytes_(bytes) {}

    // `leads` are those of the current code page; `leadOpen` says that the last byte of text began a
    // character.
    Token next(LeadBytes leads, bool leadOpen);

    // Behind an opening brace: moves behind its closing brace if nothing but at most `limit` characters of
    // text stand between the two.
    bool skipGroupOfCharacters(int limit);

private:
    Token control();
    Token word();
    Token hexByte();
    Token binary(int length);
    Token text(LeadBytes leads, bool leadOpen);
    bool at(char c) const { return position_ < bytes_.size() && bytes_[position_] == c; }

    std::string_view bytes_;
    std::size_t position_ = 0;
};

} // namespace genutil::text::rtf
