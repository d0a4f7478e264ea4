#pragma once

#include <array>
#include <string>
#include <string_view>

// What the plot can show as the product defines it, written down apart from the tables of the dialog and of
// the host.
namespace genutil::fake {

struct PlotFact {
    std::string_view control, caption, menuItem;
    // Of a kind of line, and in the legend: red, green, blue; . dotted, - solid, d dashed, x dashes and dots;
    // pixels.
    std::array<int, 3> colour{};
    char style = ' ';
    int width = 0;
};

// In the order of the menu within each of its groups: points, lines, general.
inline constexpr PlotFact plotFacts[] = {
    {"chkPoints0", "Points only", "mnuViewPtOnly"},
    {"chkPoints1", "Point numbers", "mnuViewPtNum"},
    {"chkPoints2", "Alpha IDs", "mnuViewPtAlpha"},
    {"chkPoints3", "Descriptions", "mnuViewPtDesc"},
    {"chkPoints4", "Heights", "mnuViewPtHts"},
    {"chkPoints5", "Derivations", "mnuViewPtDeriv"},
    {"chkPoints6", "Undulations (N-Values)", "mnuViewPtNVal"},
    {"chkPoints7", "Vertical Deflections", "mnuViewPtVertDef"},
    {"chkGPSPoints", "LS GPS Points", "mnuViewPtLSGPSPts"},
    {"chkLevelsHtDiff", "Levels / Ht.Diffs", "mnuViewLinesHt", {255, 255, 255}, '.', 1},
    {"chkRadiations", "Radiations", "mnuViewLinesRad", {255, 255, 0}, '-', 1},
    {"chkTraverse", "Traverse", "mnuViewLinesTrav", {255, 0, 0}, '-', 1},
    {"chkRefLines", "Reference Lines", "mnuViewLinesRef", {255, 0, 255}, 'd', 1},
    {"chkLSAngBrgDir", "LS Angles/Brgs/Dir'ns", "mnuViewLinesLSang", {0, 0, 255}, 'x', 2},
    {"chkLSHorizDist", "LS Horiz. Distances", "mnuViewLinesLSdis", {0, 255, 255}, '.', 1},
    {"chkLSSlopeDist", "LS Slope Distances", "mnuViewLinesLSSDis", {128, 128, 0}, 'd', 1},
    {"chkLSVertAng", "LS Vertical Angles", "mnuViewLinesLSVA", {128, 128, 0}, '.', 1},
    {"chkLSGPSVectors", "LS GPS Vectors", "mnuViewLinesLSGPS", {0, 255, 0}, '-', 2},
    {"chkGeoid", "Geoid model", "mnuViewGeoid"},
    {"chkPlotGeog", "Plot Geographic", "mnuViewPlotGeog"},
    {"chkScaleBar", "Scale bar", "mnuViewScaleBar"},
    {"chkScaleDefault", "Default position", "mnuViewDefault"},
    {"chkZoneBdys", "Zone boundaries", "mnuViewZoneBdys"},
};

} // namespace genutil::fake
