#include "text/rtf_code_pages.h"
#include "text/rtf_reader.h"

#include <algorithm>

namespace genutil::text::rtf {

void Reader::word(const Token& token) {
    const bool mayBeSkipped = std::exchange(mayBeSkipped_, false);
    const GroupState& state = groups_.now();
    const WordMeaning meaning = meaningOf(token.text);
    if (meaning.act == Act::AlternativeInUnicode) {
        if (state.aroundAlternatives)
            change().destination = *state.aroundAlternatives;
    } else if (state.destination == Destination::Skip) {
        return;
    } else if (meaning.act == Act::Enter) {
        enter(static_cast<Destination>(meaning.argument));
    } else if (mayBeSkipped && meaning.act != Act::Stay) {
        enter(Destination::Skip);
    } else if (meaning.act == Act::Character) {
        character(static_cast<char32_t>(meaning.argument));
    } else if (meaning.act == Act::Unicode) {
        if (state.destination == Destination::Body || state.destination == Destination::FontTable)
            input_.unicode(token.number, codePage());
        standIns_ = state.unicodeSkip;
    } else if (meaning.act == Act::UnicodeSkip) {
        change().unicodeSkip = std::max(token.numberOr(1), 0);
    } else {
        wordOfDestination(meaning, token);
    }
}

void Reader::wordOfDestination(WordMeaning meaning, const Token& token) {
    switch (groups_.now().destination) {
    case Destination::Body:
        if (!characterWord(meaning, token) && !paragraphWord(meaning, token) && !breakWord(meaning, token))
            headerWord(meaning, token);
        break;
    case Destination::FontTable:
        fontTableWord(meaning, token);
        break;
    case Destination::ColourTable:
        colourTableWord(meaning, token);
        break;
    case Destination::ListTable:
    case Destination::OverrideTable:
        listWord(meaning, token);
        break;
    case Destination::OldList:
        oldListWord(meaning, token);
        break;
    case Destination::Picture:
        pictureWord(meaning, token);
        break;
    case Destination::Skip:
    case Destination::LeftOut:
    case Destination::Alternatives:
        break;
    }
}

GroupState& Reader::change() {
    putDownText();
    format_.reset();
    return groups_.change();
}

bool Reader::breakWord(WordMeaning meaning, const Token& token) {
    switch (meaning.act) {
    case Act::ParagraphEnd:
        endParagraph();
        break;
    case Act::SectionEnd:
        endParagraphThatHasBegun();
        blocks_.breakSection();
        break;
    case Act::SectionBreak:
        putDownText();
        blocks_.setSectionBreak(meaning.argument == 1);
        break;
    case Act::PageBreak:
        endParagraphThatHasBegun();
        blocks_.breakPage();
        break;
    case Act::RowDefaults:
        putDownText();
        blocks_.startRowLayout();
        break;
    case Act::RowLeft:
        blocks_.setRowLeft(token.number);
        break;
    case Act::CellEdge:
        blocks_.addCellEdge(token.number);
        break;
    case Act::CellEnd:
        putDownText();
        blocks_.endCell(paragraphEnd(true));
        break;
    case Act::NestedCellEnd:
        endParagraphThatHasBegun();
        break;
    case Act::RowEnd:
        putDownText();
        if (!blocks_.paragraphIsEmpty())
            blocks_.endParagraph(paragraphEnd(true));
        blocks_.endRow();
        break;
    default:
        return false;
    }
    return true;
}

void Reader::headerWord(WordMeaning meaning, const Token& token) {
    if (meaning.act != Act::CodePage && meaning.act != Act::DefaultFont)
        return;
    putDownText();
    format_.reset();
    if (meaning.act == Act::DefaultFont)
        fonts_.setDefaultFont(token.number);
    else
        fonts_.setDocumentCodePage(meaning.argument != 0 ? meaning.argument : token.number);
}

void Reader::fontTableWord(WordMeaning meaning, const Token& token) {
    putDownText();
    if (meaning.act == Act::Font)
        fonts_.select(token.number);
    else if (meaning.act == Act::FontCharset)
        fonts_.setCodePage(codePageOfCharset(token.number));
    else if (meaning.act == Act::FontCodePage)
        fonts_.setCodePage(token.number);
}

void Reader::colourTableWord(WordMeaning meaning, const Token& token) {
    if (meaning.act == Act::Red)
        colours_.setPart(&Colour::red, token.number);
    else if (meaning.act == Act::Green)
        colours_.setPart(&Colour::green, token.number);
    else if (meaning.act == Act::Blue)
        colours_.setPart(&Colour::blue, token.number);
}

void Reader::listWord(WordMeaning meaning, const Token& token) {
    const bool inOverrides = groups_.now().destination == Destination::OverrideTable;
    switch (meaning.act) {
    case Act::ListId:
        inOverrides ? lists_.setOverrideId(token.number) : lists_.setListId(token.number);
        break;
    case Act::OverrideStart:
        lists_.startOverride();
        break;
    case Act::List:
        lists_.setOverrideNumber(token.number);
        break;
    case Act::ListStart:
        lists_.startList();
        break;
    case Act::LevelStart:
        if (!inOverrides)
            lists_.startLevel();
        break;
    case Act::LevelKind:
        if (!inOverrides)
            lists_.setLevelFormat(token.number);
        break;
    default:
        break;
    }
}

void Reader::oldListWord(WordMeaning meaning, const Token& token) {
    if (meaning.act == Act::OldListKind)
        oldListFormat_ = meaning.argument;
    else if (meaning.act == Act::OldListLevel)
        oldListLevel_ = std::clamp(token.number - 1, 0, listLevels - 1);
}

void Reader::pictureWord(WordMeaning meaning, const Token& token) {
    switch (meaning.act) {
    case Act::PictureKind:
        picture_.setKind(static_cast<Picture::Kind>(meaning.argument));
        break;
    case Act::PictureWidth:
        picture_.setWidth(token.number);
        break;
    case Act::PictureHeight:
        picture_.setHeight(token.number);
        break;
    case Act::PictureScaleX:
        picture_.setScaleX(token.numberOr(100));
        break;
    case Act::PictureScaleY:
        picture_.setScaleY(token.numberOr(100));
        break;
    default:
        break;
    }
}

} // namespace genutil::text::rtf
