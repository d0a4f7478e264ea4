#pragma once

#include "text/rich_text.h"

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace genutil::text::rtf {

inline constexpr int listLevels = 9;

// The number formats of list levels as files write them.
inline constexpr int bulletFormat = 23;
inline constexpr int noNumberFormat = 255;
int numberFormatOf(ListEntry::Kind kind);

// The lists of a document. Lists count from 1 in the order in which paragraphs first use them, and a level of
// a list has one kind throughout.
class Lists {
public:
    // Inside the table of lists.
    void startList();
    void startLevel();
    void setLevelFormat(int format);
    void setListId(int id);
    // Inside the table that says which list a paragraph's list number means.
    void startOverride() { override_ = {}; }
    void setOverrideId(int id);
    void setOverrideNumber(int number);

    // The entry of the next paragraph, which names a list of the tables. Nothing for levels without number.
    std::optional<ListEntry> entry(int number, int level);
    // The entry of the next paragraph, which describes its numbering itself; it continues the paragraph
    // before it if that does the same.
    std::optional<ListEntry> describedEntry(int format, int level);
    // The next paragraph is in no list.
    void noEntry() { described_ = 0; }

private:
    using Formats = std::array<int, listLevels>;
    struct Definition {
        Formats formats{};
        int levels = 0;
    };
    struct Override {
        std::optional<int> id;
        std::optional<int> number;
    };
    struct Used {
        std::array<std::optional<ListEntry::Kind>, listLevels> kinds;
    };

    int formatIn(std::optional<int> id, int level) const;
    void enterOverride();
    int newList();

    std::vector<Definition> definitions_;
    std::map<int, std::size_t> definitionOfId_;
    Override override_;
    std::map<int, int> idOfNumber_;
    std::vector<Used> used_;
    std::map<std::pair<bool, int>, int> listOf_; // by (whether it is an id, id or number)
    int described_ = 0; // the list of paragraphs that describe theirs; 0: none going on
};

} // namespace genutil::text::rtf
