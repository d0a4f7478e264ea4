#include "display/display_boxes.h"

#include <array>

namespace genutil {
namespace {

using enum DisplayFrame;
using enum LineStyle;

constexpr Rgb white{255, 255, 255}, yellow{255, 255, 0}, red{255, 0, 0}, magenta{255, 0, 255},
    blue{0, 0, 255}, cyan{0, 255, 255}, olive{128, 128, 0}, green{0, 255, 0};

constexpr std::array boxes{
    DisplayBox{
        "chkPoints0", "Points only", "mnuViewPtOnly", Points, "Points without any label. Clears all labels."},
    DisplayBox{"chkPoints1", "Point numbers", "mnuViewPtNum", Points,
        "The number of each point beside it. Two kinds of label are shown at most."},
    DisplayBox{"chkPoints2", "Alpha IDs", "mnuViewPtAlpha", Points,
        "The name of each point that has one. Two kinds of label are shown at most."},
    DisplayBox{"chkPoints3", "Descriptions", "mnuViewPtDesc", Points,
        "The description of each point. Two kinds of label are shown at most."},
    DisplayBox{"chkPoints4", "Heights", "mnuViewPtHts", Points,
        "The height of each point in metres. Two kinds of label are shown at most."},
    DisplayBox{"chkPoints5", "Derivations", "mnuViewPtDeriv", Points,
        "How the coordinates of each point were obtained. Two kinds of label are shown at most."},
    DisplayBox{"chkPoints6", "Undulations (N-Values)", "mnuViewPtNVal", Points,
        "The height of the geoid above the spheroid at each point, in metres. For geodetic jobs."},
    DisplayBox{"chkPoints7", "Vertical Deflections", "mnuViewPtVertDef", Points,
        "The deflection of the vertical at each point. For geodetic jobs."},
    DisplayBox{"chkLevelsHtDiff", "Levels / Ht.Diffs", "mnuViewLinesHt", Lines,
        "Levels and height differences: dotted white lines.", {"LineLevelsHtDiff", white, Dotted}},
    DisplayBox{"chkRadiations", "Radiations", "mnuViewLinesRad", Lines,
        "Radiations from a station to its points: solid yellow lines.", {"LineRadiations", yellow, Solid}},
    DisplayBox{"chkTraverse", "Traverse", "mnuViewLinesTrav", Lines,
        "The legs of traverses: solid red lines.", {"LineTraverse", red, Solid}},
    DisplayBox{"chkRefLines", "Reference Lines", "mnuViewLinesRef", Lines,
        "What observations are oriented by: a dashed magenta line to a known or previous point, an arrow for "
        "a bearing or azimuth.",
        {"LineRefLines", magenta, Dashed}},
    DisplayBox{"chkGeoid", "Geoid model", "mnuViewGeoid", General,
        "The geoid model of the job. For jobs that use one or name a geoid file."},
    DisplayBox{"chkLSAngBrgDir", "LS Angles/Brgs/Dir'ns", "mnuViewLinesLSang", Lines,
        "Angles, bearings and directions of the network: thick dash-dotted blue lines.",
        {"LineLSAngBrgDir", blue, DashDot, 2}},
    DisplayBox{"chkLSHorizDist", "LS Horiz. Distances", "mnuViewLinesLSdis", Lines,
        "Horizontal distances of the network: dotted cyan lines.", {"LineLSHorizDist", cyan, Dotted}},
    DisplayBox{"chkLSSlopeDist", "LS Slope Distances", "mnuViewLinesLSSDis", Lines,
        "Slope distances of the network: dashed olive lines.", {"LineLSSlopeDist", olive, Dashed}},
    DisplayBox{"chkLSVertAng", "LS Vertical Angles", "mnuViewLinesLSVA", Lines,
        "Vertical angles of the network: dotted olive lines.", {"LineLSVertAng", olive, Dotted}},
    DisplayBox{"chkLSGPSVectors", "LS GPS Vectors", "mnuViewLinesLSGPS", Lines,
        "GPS vectors of the network: thick solid green lines.", {"LineLSGPSVectors", green, Solid, 2}},
    DisplayBox{"chkGPSPoints", "LS GPS Points", "mnuViewPtLSGPSPts", Points,
        "The GPS points of the least-squares network."},
    DisplayBox{"chkPlotGeog", "Plot Geographic", "mnuViewPlotGeog", General,
        "Plots by latitude and longitude, without a scale bar. For geodetic jobs."},
    DisplayBox{"chkScaleBar", "Scale bar", "mnuViewScaleBar", General,
        "A bar of a round ground distance. Not in a geographic plot."},
    DisplayBox{"chkScaleDefault", "Default position", "mnuViewDefault", General,
        "Puts the scale bar in its usual place in the plot."},
    DisplayBox{"chkZoneBdys", "Zone boundaries", "mnuViewZoneBdys", General,
        "The limits of the zones of the projection. For geodetic jobs."},
};

constexpr std::array beforeButtons{"chkGPSPoints", "chkLevelsHtDiff", "chkRadiations", "chkTraverse",
    "chkRefLines", "chkLSAngBrgDir", "chkLSHorizDist", "chkLSSlopeDist", "chkLSVertAng", "chkLSGPSVectors",
    "chkGeoid", "chkPlotGeog", "chkZoneBdys", "chkScaleBar", "chkScaleDefault"};
constexpr std::array afterButtons{"chkPoints0", "chkPoints1", "chkPoints2", "chkPoints3", "chkPoints4",
    "chkPoints5", "chkPoints6", "chkPoints7"};

constexpr std::array arrow{LegendLine{"Line1", magenta, Solid, 2}, LegendLine{"Line2", magenta, Solid},
    LegendLine{"Line3", magenta, Solid}};

} // namespace

std::span<const DisplayBox> displayBoxes() {
    return boxes;
}
std::span<const char* const> focusBeforeButtons() {
    return beforeButtons;
}
std::span<const char* const> focusAfterButtons() {
    return afterButtons;
}
std::span<const LegendLine> referenceArrow() {
    return arrow;
}

} // namespace genutil
