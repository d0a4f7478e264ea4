#pragma once

#include "hostif/grid.h"

#include <string>
#include <string_view>

// How the user has arranged the columns of a grid, as one text of the settings: the titles in the order in
// which they stand, each with its width in twips ("*" where its texts decide) and whether it is hidden:
// "Job=*;Surveyor=2400;Zone=*,hidden".
namespace genutil {

std::string columnLayout(const Grid& grid);

// Arranges the columns like this. Titles that the grid does not have and what cannot be read are passed over;
// columns that are not named follow in their own order. Columns without a title stay as they are, at the end.
void applyColumnLayout(Grid& grid, std::string_view layout);

} // namespace genutil
