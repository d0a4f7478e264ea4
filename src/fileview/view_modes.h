#pragma once

#include <cstdint>

namespace genutil {

// The caption of the window as designed, and the title of most view modes.
inline constexpr const char* fileDisplayTitle = "File Display";

// What a view mode fixes.
struct ViewModeRules {
    enum class Title { Own, FromSystemInfo };
    enum class AtSetUp { ShowsFile, ShowsNothing };

    std::int16_t number;
    const char* title;
    bool open;              // File > Open is available
    bool print;             // File > Print is available
    bool edit;              // the text may be edited
    bool rememberPlacement; // the window's placement is kept between sessions
    Title titleSource = Title::Own;
    AtSetUp atSetUp = AtSetUp::ShowsFile;
    bool isHistory = false; // prose: proportional font, wrapped, no file name in the title
};

// The rules of a view mode; a number without a mode of its own gets those of a plain file display whose
// placement is not remembered.
const ViewModeRules& viewMode(std::int16_t number);

} // namespace genutil
