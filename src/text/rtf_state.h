#pragma once

#include "text/rich_text.h"
#include "text/rtf_words.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

// What a group inherits and what its end restores.
namespace genutil::text::rtf {

struct CharacterState {
    std::optional<int> font; // number in the font table; nothing: the default font
    int halfPoints = 24;
    int foreground = 0; // numbers in the colour table
    int highlight = 0;
    int shading = 0;
    VerticalPosition position = VerticalPosition::Normal;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool hidden = false;
    bool deleted = false;
};

struct ParagraphState {
    ParagraphAlignment alignment = ParagraphAlignment::Left;
    int leftIndent = 0;
    int rightIndent = 0;
    int firstLineIndent = 0;
    int spaceBefore = 0;
    int spaceAfter = 0;
    int lineSpacing = 0;
    bool lineMultiple = false;
    bool pageBreakBefore = false;
    bool inTable = false;
    TabStop::Kind nextTab = TabStop::Kind::Left;
    std::shared_ptr<const std::vector<TabStop>>
        tabs;     // shared, so that saving a state costs little; may be null
    int list = 0; // 0: none
    int listLevel = 0;
    std::optional<int> describedFormat; // of a paragraph that describes its numbering itself
    int describedLevel = 0;
};

struct GroupState {
    CharacterState character;
    ParagraphState paragraph;
    Destination destination = Destination::Body;
    std::optional<Destination> aroundAlternatives; // where the group with the alternatives stands
    int unicodeSkip = 1;                           // characters behind \u that stand in for it
};

// A state is saved only by a group that changes it, so braces alone take no memory.
class GroupStack {
public:
    const GroupState& now() const { return now_; }
    GroupState& change() {
        if (saved_.empty() || saved_.back().depth != depth_)
            saved_.push_back({now_, depth_});
        return now_;
    }
    std::size_t depth() const { return depth_; }
    void open() { ++depth_; }
    // At least one group is open.
    void close() {
        if (!saved_.empty() && saved_.back().depth == depth_) {
            now_ = std::move(saved_.back().state);
            saved_.pop_back();
        }
        --depth_;
    }

private:
    struct Saved {
        GroupState state;
        std::size_t depth;
    };
    GroupState now_;
    std::vector<Saved> saved_;
    std::size_t depth_ = 0;
};

} // namespace genutil::text::rtf
