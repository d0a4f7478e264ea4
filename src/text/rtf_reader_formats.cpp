#include "text/rtf_reader.h"

#include <algorithm>

namespace genutil::text::rtf {

namespace {

// Half points.
constexpr int smallestFont = 2;
constexpr int largestFont = 800;
constexpr int singleLine = 240; // of LineMultiple
constexpr std::size_t mostTabs = 64;

} // namespace

bool Reader::characterWord(WordMeaning meaning, const Token& token) {
    switch (meaning.act) {
    case Act::Flag:
        setFlag(static_cast<CharacterFlag>(meaning.argument), token.isOn());
        break;
    case Act::Underline:
        characters().underline = token.isOn();
        break;
    case Act::UnderlineOff:
        characters().underline = false;
        break;
    case Act::Position:
        characters().position = static_cast<VerticalPosition>(meaning.argument);
        break;
    case Act::Raise:
    case Act::Lower:
        setShift(meaning.act == Act::Raise ? token.numberOr(6) : -token.numberOr(6));
        break;
    case Act::Plain:
        characters() = {};
        break;
    case Act::Font:
        characters().font = token.number;
        break;
    case Act::FontSize:
        characters().halfPoints = std::clamp(token.numberOr(24), smallestFont, largestFont);
        break;
    case Act::Foreground:
        characters().foreground = token.number;
        break;
    case Act::Highlight:
        characters().highlight = token.number;
        break;
    case Act::Shading:
        characters().shading = token.number;
        break;
    default:
        return false;
    }
    return true;
}

void Reader::setFlag(CharacterFlag flag, bool on) {
    CharacterState& state = characters();
    switch (flag) {
    case CharacterFlag::Bold:
        state.bold = on;
        break;
    case CharacterFlag::Italic:
        state.italic = on;
        break;
    case CharacterFlag::Strike:
        state.strike = on;
        break;
    case CharacterFlag::Hidden:
        state.hidden = on;
        break;
    case CharacterFlag::Deleted:
        state.deleted = on;
        break;
    }
}

void Reader::setShift(int halfPoints) {
    characters().position = halfPoints > 0   ? VerticalPosition::Superscript
                            : halfPoints < 0 ? VerticalPosition::Subscript
                                             : VerticalPosition::Normal;
}

bool Reader::paragraphWord(WordMeaning meaning, const Token& token) {
    switch (meaning.act) {
    case Act::ParagraphDefaults:
        paragraph() = {};
        break;
    case Act::Alignment:
        paragraph().alignment = static_cast<ParagraphAlignment>(meaning.argument);
        break;
    case Act::Length:
        setLength(static_cast<ParagraphLength>(meaning.argument), token.number);
        break;
    case Act::LineMultiple:
        paragraph().lineMultiple = token.isOn();
        break;
    case Act::Tab:
        addTab(token.number);
        break;
    case Act::TabKind:
        paragraph().nextTab = static_cast<TabStop::Kind>(meaning.argument);
        break;
    case Act::PageBreakBefore:
        paragraph().pageBreakBefore = token.isOn();
        break;
    case Act::InTable:
        paragraph().inTable = token.isOn();
        break;
    case Act::Nesting:
        if (token.number > 0)
            paragraph().inTable = true;
        break;
    case Act::List:
        paragraph().list = std::max(token.number, 0);
        break;
    case Act::ListLevel:
        paragraph().listLevel = std::clamp(token.number, 0, listLevels - 1);
        break;
    default:
        return false;
    }
    return true;
}

void Reader::setLength(ParagraphLength length, int twips) {
    twips = std::clamp(twips, -longestLength, longestLength);
    ParagraphState& state = paragraph();
    switch (length) {
    case ParagraphLength::Left:
        state.leftIndent = twips;
        break;
    case ParagraphLength::Right:
        state.rightIndent = twips;
        break;
    case ParagraphLength::FirstLine:
        state.firstLineIndent = twips;
        break;
    case ParagraphLength::Before:
        state.spaceBefore = std::max(twips, 0);
        break;
    case ParagraphLength::After:
        state.spaceAfter = std::max(twips, 0);
        break;
    case ParagraphLength::LineSpacing:
        state.lineSpacing = twips;
        break;
    }
}

void Reader::addTab(int twips) {
    ParagraphState& state = paragraph();
    const TabStop tab{std::min(twips, longestLength), std::exchange(state.nextTab, TabStop::Kind::Left)};
    auto tabs = state.tabs ? *state.tabs : std::vector<TabStop>();
    const auto place = std::ranges::lower_bound(tabs, tab.position, {}, &TabStop::position);
    if (place != tabs.end() && place->position == tab.position)
        place->kind = tab.kind;
    else if (tab.position > 0 && tabs.size() < mostTabs)
        tabs.insert(place, tab);
    state.tabs = std::make_shared<const std::vector<TabStop>>(std::move(tabs));
}

const CharacterFormat& Reader::format() {
    if (!format_) {
        const CharacterState& state = groups_.now().character;
        const auto highlight = colours_.at(state.highlight);
        format_ = CharacterFormat{fonts_.nameOf(state.font), state.halfPoints / 2.0, state.bold, state.italic,
            state.underline, state.strike, state.position, colours_.at(state.foreground),
            highlight ? highlight : colours_.at(state.shading)};
    }
    return *format_;
}

ParagraphFormat Reader::paragraphFormat() {
    const ParagraphState& state = groups_.now().paragraph;
    ParagraphFormat format{state.alignment, state.leftIndent, state.rightIndent, state.firstLineIndent,
        state.spaceBefore, state.spaceAfter, state.lineSpacing, state.lineMultiple, {}, state.pageBreakBefore,
        {}};
    if (format.lineMultiple && format.lineSpacing == singleLine)
        format.lineSpacing = 0;
    if (format.lineSpacing <= 0)
        format.lineMultiple = false;
    if (state.tabs)
        format.tabs = *state.tabs;
    if (state.list != 0)
        format.list = lists_.entry(state.list, state.listLevel);
    else if (state.describedFormat)
        format.list = lists_.describedEntry(*state.describedFormat, state.describedLevel);
    else
        lists_.noEntry();
    return format;
}

} // namespace genutil::text::rtf
