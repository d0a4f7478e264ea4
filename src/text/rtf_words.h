#pragma once

#include <string_view>

// What each control word means to the reader. Words that are not listed mean nothing to it.
namespace genutil::text::rtf {

// Where the text of a group goes.
enum class Destination {
    Body,
    Skip,
    LeftOut, // skipped, and a loss when the text is written again
    Alternatives,
    FontTable,
    ColourTable,
    ListTable,
    OverrideTable,
    OldList,
    Picture
};

enum class Act {
    None,
    Enter, // a Destination
    Stay,  // a group that is read although it is marked as one that may be skipped
    AlternativeInUnicode,
    // characters
    Character, // a code point
    Unicode,
    UnicodeSkip,
    Flag, // a CharacterFlag, on or off
    Underline,
    UnderlineOff,
    Position, // a VerticalPosition
    Raise,
    Lower,
    Plain,
    Font,
    FontSize,
    Foreground,
    Highlight,
    Shading,
    // paragraphs
    ParagraphDefaults,
    Alignment, // a ParagraphAlignment
    Length,    // a ParagraphLength
    LineMultiple,
    Tab,
    TabKind, // a TabStop::Kind
    PageBreakBefore,
    InTable,
    Nesting,
    List,
    ListLevel,
    // breaks and tables
    ParagraphEnd,
    SectionEnd,
    SectionBreak, // 1: at a new page
    PageBreak,
    RowDefaults,
    RowLeft,
    CellEdge,
    CellEnd,
    NestedCellEnd,
    RowEnd,
    // code pages and the header's tables
    CodePage, // 0: the word's number
    DefaultFont,
    FontCharset,
    FontCodePage,
    Red,
    Green,
    Blue,
    ListStart,
    LevelStart,
    LevelKind,
    ListId,
    OverrideStart,
    OldListKind, // a number format as of LevelKind
    OldListLevel,
    // pictures
    PictureKind, // a Picture::Kind
    PictureWidth,
    PictureHeight,
    PictureScaleX,
    PictureScaleY,
};

enum class CharacterFlag { Bold, Italic, Strike, Hidden, Deleted };
enum class ParagraphLength { Left, Right, FirstLine, Before, After, LineSpacing };

struct WordMeaning {
    Act act = Act::None;
    int argument = 0;
};

WordMeaning meaningOf(std::string_view word);

} // namespace genutil::text::rtf
