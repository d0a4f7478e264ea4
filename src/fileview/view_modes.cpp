#include "fileview/view_modes.h"

#include <algorithm>
#include <array>

namespace genutil {
namespace {

constexpr std::array modes{
    //        number title                   open   print  edit   remember
    ViewModeRules{1, fileDisplayTitle, false, true, true, true},
    ViewModeRules{2, fileDisplayTitle, false, true, true, true},
    ViewModeRules{3, fileDisplayTitle, false, true, true, true},
    ViewModeRules{4, fileDisplayTitle, false, true, true, true},
    ViewModeRules{21, fileDisplayTitle, false, true, true, true},
    ViewModeRules{22, "List Points", false, true, true, false},
    ViewModeRules{.number = 23,
        .title = "Development History",
        .open = false,
        .print = false,
        .edit = false,
        .rememberPlacement = false,
        .isHistory = true},
    ViewModeRules{.number = 24,
        .title = "View File",
        .open = true,
        .print = true,
        .edit = true,
        .rememberPlacement = true,
        .atSetUp = ViewModeRules::AtSetUp::ShowsNothing},
    ViewModeRules{25, "Processing Log", true, true, true, true},
    ViewModeRules{.number = 26,
        .title = "",
        .open = true,
        .print = true,
        .edit = true,
        .rememberPlacement = true,
        .titleSource = ViewModeRules::Title::FromSystemInfo},
    ViewModeRules{29, "Inverse Report", true, true, true, true},
};

constexpr ViewModeRules otherMode{0, fileDisplayTitle, false, true, true, false};

} // namespace

const ViewModeRules& viewMode(std::int16_t number) {
    const auto mode = std::ranges::find(modes, number, &ViewModeRules::number);
    return mode == modes.end() ? otherMode : *mode;
}

} // namespace genutil
