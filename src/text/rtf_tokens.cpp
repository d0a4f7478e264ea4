#include "text/rtf_tokens.h"

#include <algorithm>
#include <limits>

namespace genutil::text::rtf {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool endsText(char c) {
    return c == '\\' || c == '{' || c == '}' || c == '\r' || c == '\n';
}

} // namespace

bool isLeadByte(LeadBytes leads, char byte) {
    const auto value = static_cast<unsigned char>(byte);
    switch (leads) {
    case LeadBytes::None:
        return false;
    case LeadBytes::ShiftJis:
        return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
    case LeadBytes::Wide:
        return value >= 0x81 && value <= 0xFE;
    }
    return false;
}

int hexValue(char digit) {
    if (isDigit(digit))
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}

Token Tokenizer::next(LeadBytes leads, bool leadOpen) {
    while (at('\r') || at('\n'))
        ++position_;
    if (position_ == bytes_.size())
        return {};
    switch (bytes_[position_]) {
    case '{':
        ++position_;
        return {Token::Kind::GroupStart, {}};
    case '}':
        ++position_;
        return {Token::Kind::GroupEnd, {}};
    case '\\':
        ++position_;
        return control();
    default:
        return text(leads, leadOpen);
    }
}

Token Tokenizer::control() {
    if (position_ == bytes_.size())
        return {};
    if (isLetter(bytes_[position_]))
        return word();
    if (at('\'')) {
        ++position_;
        return hexByte();
    }
    return {Token::Kind::Symbol, bytes_.substr(position_++, 1)};
}

Token Tokenizer::word() {
    const std::size_t start = position_;
    while (position_ < bytes_.size() && isLetter(bytes_[position_]))
        ++position_;
    Token token{Token::Kind::Word, bytes_.substr(start, position_ - start)};
    const bool negative = at('-') && position_ + 1 < bytes_.size() && isDigit(bytes_[position_ + 1]);
    if (negative)
        ++position_;
    constexpr long long limit = std::numeric_limits<int>::max();
    long long number = 0;
    for (; position_ < bytes_.size() && isDigit(bytes_[position_]); ++position_) {
        number = std::min(number * 10 + (bytes_[position_] - '0'), limit);
        token.hasNumber = true;
    }
    token.number = static_cast<int>(negative ? -number : number);
    if (at(' '))
        ++position_;
    return token.text == "bin" ? binary(token.number) : token;
}

Token Tokenizer::hexByte() {
    if (position_ + 1 >= bytes_.size())
        return {Token::Kind::HexByte, {}, -1};
    const int high = hexValue(bytes_[position_]);
    const int low = hexValue(bytes_[position_ + 1]);
    if (high < 0 || low < 0)
        return {Token::Kind::HexByte, {}, -1};
    position_ += 2;
    return {Token::Kind::HexByte, {}, high * 16 + low};
}

Token Tokenizer::binary(int length) {
    const auto wanted = static_cast<std::size_t>(std::max(length, 0));
    Token token{Token::Kind::Binary, bytes_.substr(position_, wanted)};
    position_ += token.text.size();
    return token;
}

Token Tokenizer::text(LeadBytes leads, bool leadOpen) {
    const std::size_t start = position_;
    while (position_ < bytes_.size() && !endsText(bytes_[position_])) {
        const bool lead = !leadOpen && isLeadByte(leads, bytes_[position_]);
        leadOpen = false;
        ++position_;
        if (lead && position_ < bytes_.size() && static_cast<unsigned char>(bytes_[position_]) >= 0x40)
            ++position_;
    }
    return {Token::Kind::Bytes, bytes_.substr(start, position_ - start)};
}

bool Tokenizer::skipGroupOfCharacters(int count) {
    Tokenizer ahead = *this;
    for (int characters = 0;;) {
        if (ahead.at('}') && characters == count) {
            position_ = ahead.position_ + 1;
            return true;
        }
        if (characters == count || ahead.position_ == bytes_.size())
            return false;
        if (ahead.at('\\')) {
            ++ahead.position_;
            const Token token = ahead.control();
            if (token.kind != Token::Kind::HexByte || token.number < 0)
                return false;
        } else if (endsText(bytes_[ahead.position_++])) {
            return false;
        }
        ++characters;
    }
}

} // namespace genutil::text::rtf
