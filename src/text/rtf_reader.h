#pragma once

#include "text/rtf_blocks.h"
#include "text/rtf_characters.h"
#include "text/rtf_header_tables.h"
#include "text/rtf_lists.h"
#include "text/rtf_pictures.h"
#include "text/rtf_state.h"
#include "text/rtf_tokens.h"

namespace genutil::text::rtf {

// Reads one file from its first brace to the brace that closes it.
class Reader {
public:
    Reader(std::string_view bytes, const CodePages& pages) : tokens_(bytes), input_(pages) {}
    RichText read();
    // Whether what has been read holds all that a reader of the document would miss.
    bool isWhole() const { return isWhole_; }

private:
    // False when nothing more is to be read.
    bool take(const Token& token);
    bool standsInForUnicode(Token& token);
    bool closeGroup();
    void leave(Destination destination);

    void word(const Token& token);
    void symbol(char c);
    void bytes(std::string_view bytes);
    void character(char32_t codePoint);
    void enter(Destination destination);

    void wordOfDestination(WordMeaning meaning, const Token& token);
    bool characterWord(WordMeaning meaning, const Token& token);
    bool paragraphWord(WordMeaning meaning, const Token& token);
    bool breakWord(WordMeaning meaning, const Token& token);
    void headerWord(WordMeaning meaning, const Token& token);
    void fontTableWord(WordMeaning meaning, const Token& token);
    void colourTableWord(WordMeaning meaning, const Token& token);
    void listWord(WordMeaning meaning, const Token& token);
    void oldListWord(WordMeaning meaning, const Token& token);
    void pictureWord(WordMeaning meaning, const Token& token);

    // The state for changing it: what was said under the old one is put down first.
    GroupState& change();
    CharacterState& characters() { return change().character; }
    ParagraphState& paragraph() { return change().paragraph; }
    void setFlag(CharacterFlag flag, bool on);
    void setShift(int halfPoints);
    void setLength(ParagraphLength length, int twips);
    void addTab(int twips);

    void putDownText();
    void endParagraph();
    void endParagraphThatHasBegun();
    void addPicture();
    ParagraphEnd paragraphEnd(bool inTable);
    const CharacterFormat& format();
    ParagraphFormat paragraphFormat();
    int codePage() const;
    bool isHidden() const;

    Tokenizer tokens_;
    CharacterInput input_;
    GroupStack groups_;
    FontTable fonts_;
    ColourTable colours_;
    Lists lists_;
    PictureInput picture_;
    BlockBuilder blocks_;
    std::optional<CharacterFormat> format_; // of the state as it is now, once it has been asked for
    bool isWhole_ = true;
    bool mayBeSkipped_ = false;        // the group is marked so
    int standIns_ = 0;                 // characters that still stand in for the last \u
    std::optional<int> oldListFormat_; // of the numbering that is being described
    int oldListLevel_ = 0;
};

} // namespace genutil::text::rtf
