#include "text/rtf_reader.h"

#include "text/rtf_code_pages.h"

#include <algorithm>

namespace genutil::text::rtf {

namespace {

// Words that never stand in for a character, even where the file says that one does.
bool endsStandIns(Act act) {
    switch (act) {
    case Act::Unicode:
    case Act::ParagraphEnd:
    case Act::SectionEnd:
    case Act::PageBreak:
    case Act::CellEnd:
    case Act::NestedCellEnd:
    case Act::RowEnd:
        return true;
    default:
        return false;
    }
}

} // namespace

RichText Reader::read() {
    for (;;) {
        Token token = tokens_.next(leadBytesOf(codePage()), input_.leadOpen());
        if (token.kind == Token::Kind::End)
            break;
        if (!standsInForUnicode(token) && !take(token))
            break;
    }
    leave(groups_.now().destination);
    putDownText();
    if (!blocks_.paragraphIsEmpty() || blocks_.isEmpty())
        endParagraph();
    return blocks_.finish();
}

bool Reader::take(const Token& token) {
    switch (token.kind) {
    case Token::Kind::End:
        return false;
    case Token::Kind::GroupStart:
        groups_.open();
        break;
    case Token::Kind::GroupEnd:
        return closeGroup();
    case Token::Kind::Word:
        word(token);
        return true;
    case Token::Kind::Symbol:
        symbol(token.text.front());
        return true;
    case Token::Kind::HexByte:
        if (const char byte = static_cast<char>(token.number); token.number >= 0)
            bytes({&byte, 1});
        break;
    case Token::Kind::Bytes:
        bytes(token.text);
        break;
    case Token::Kind::Binary:
        if (groups_.now().destination == Destination::Picture)
            picture_.addBytes(token.text);
        break;
    }
    mayBeSkipped_ = false;
    return true;
}

// Takes the characters off that stand in for the last \u. The brace of another group ends them, unless the
// group holds nothing else.
bool Reader::standsInForUnicode(Token& token) {
    if (standIns_ == 0)
        return false;
    switch (token.kind) {
    case Token::Kind::Bytes: {
        const std::size_t count = std::min(token.text.size(), static_cast<std::size_t>(standIns_));
        token.text.remove_prefix(count);
        standIns_ -= static_cast<int>(count);
        return token.text.empty();
    }
    case Token::Kind::GroupStart: {
        const bool isStandIn = tokens_.skipGroupOfCharacters(standIns_);
        standIns_ = 0;
        return isStandIn;
    }
    case Token::Kind::Word:
        if (endsStandIns(meaningOf(token.text).act))
            standIns_ = 0;
        break;
    case Token::Kind::Symbol:
        if (token.text == "*")
            standIns_ = 0;
        break;
    case Token::Kind::GroupEnd:
    case Token::Kind::End:
        standIns_ = 0;
        break;
    case Token::Kind::HexByte:
    case Token::Kind::Binary:
        break;
    }
    if (standIns_ == 0)
        return false;
    --standIns_;
    return true;
}

bool Reader::closeGroup() {
    if (groups_.depth() <= 1)
        return false;
    putDownText();
    const Destination left = groups_.now().destination;
    groups_.close();
    format_.reset();
    if (left != groups_.now().destination)
        leave(left);
    mayBeSkipped_ = false;
    return true;
}

void Reader::leave(Destination destination) {
    switch (destination) {
    case Destination::FontTable:
        putDownText();
        fonts_.finish();
        break;
    case Destination::Picture:
        addPicture();
        break;
    case Destination::OldList:
        paragraph().describedFormat = oldListFormat_;
        paragraph().describedLevel = oldListLevel_;
        break;
    default:
        break;
    }
}

void Reader::enter(Destination destination) {
    if (groups_.depth() <= 1)
        return; // a table or a header without braces of its own must not swallow the document
    if (destination == Destination::LeftOut) {
        isWhole_ = false;
        destination = Destination::Skip;
    }
    if (destination != Destination::Skip && groups_.now().destination != Destination::Body)
        destination = destination == Destination::Alternatives ? destination : Destination::Skip;
    GroupState& state = change();
    if (destination == Destination::Alternatives) {
        state.aroundAlternatives = state.destination;
        destination = Destination::Skip;
    }
    state.destination = destination;
    if (destination == Destination::Picture)
        picture_.start();
    if (destination == Destination::OldList) {
        oldListFormat_.reset();
        oldListLevel_ = 0;
    }
}

void Reader::symbol(char c) {
    if (c == '*') {
        mayBeSkipped_ = groups_.depth() > 1;
        return;
    }
    mayBeSkipped_ = false;
    switch (c) {
    case '\\':
    case '{':
    case '}':
        bytes({&c, 1});
        break;
    case '~':
        character(U'\u00A0');
        break;
    case '-':
        character(U'\u00AD');
        break;
    case '_':
        character(U'\u2011');
        break;
    case '\t':
        character(U'\t');
        break;
    case '\r':
    case '\n':
        if (groups_.now().destination == Destination::Body)
            endParagraph();
        break;
    default:
        break;
    }
}

void Reader::bytes(std::string_view bytes) {
    switch (groups_.now().destination) {
    case Destination::Body:
    case Destination::FontTable:
        input_.bytes(bytes, codePage());
        break;
    case Destination::ColourTable:
        colours_.addText(bytes);
        break;
    case Destination::Picture:
        picture_.addHex(bytes);
        break;
    default:
        break;
    }
}

void Reader::character(char32_t codePoint) {
    const Destination destination = groups_.now().destination;
    if (destination == Destination::Body || destination == Destination::FontTable)
        input_.character(codePoint);
}

void Reader::putDownText() {
    if (input_.isEmpty())
        return;
    const std::string text = input_.take();
    if (groups_.now().destination == Destination::FontTable)
        fonts_.addText(text);
    else if (!isHidden())
        blocks_.addText(text, format());
    else
        isWhole_ = false;
}

void Reader::addPicture() {
    auto picture = picture_.finish();
    isWhole_ = isWhole_ && picture;
    if (picture && !isHidden())
        blocks_.addPicture(std::move(*picture), format());
}

void Reader::endParagraph() {
    putDownText();
    blocks_.endParagraph(paragraphEnd(groups_.now().paragraph.inTable));
}

void Reader::endParagraphThatHasBegun() {
    putDownText();
    if (!blocks_.paragraphIsEmpty())
        endParagraph();
}

ParagraphEnd Reader::paragraphEnd(bool inTable) {
    return {format(), paragraphFormat(), inTable};
}

int Reader::codePage() const {
    if (groups_.now().destination == Destination::FontTable)
        return fonts_.describedCodePage();
    return fonts_.codePageOf(groups_.now().character.font);
}

bool Reader::isHidden() const {
    return groups_.now().character.hidden || groups_.now().character.deleted;
}

} // namespace genutil::text::rtf
