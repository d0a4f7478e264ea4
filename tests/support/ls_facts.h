#pragma once

#include <string_view>

// The least-squares options as the product defines them, written down apart from the tables that the code
// works by.
namespace genutil::fake {

struct LSFact {
    std::string_view member;
    char type; // d double, s single, i and l integers of 16 and 32 bits, b Boolean, t text
    std::string_view control;
    std::string_view unit;
    // How its box shows a number: S seconds, D distance, P ppm, F constraint factor, C convergence, T
    // tolerance; what it refuses: 0 zero, B both parts zero, L a limit of zero; its row: of 2- or
    // 3-dimensional observations.
    std::string_view box;
    int focus;   // its number in the order of the focus, 0 where that is left open
    char column; // o observation error, p its ppm part, 1 and 2 centring; else the group that it stands in
    std::string_view caption; // of its row, or beside it
    int topic;
};

// By number, from 1; the last five are those of the point-save dialog.
inline constexpr LSFact lsFacts[] = {
    {"ProvPtTolH", 'd', "txtProvPtToleranceH", "m", "TL-", 39, 't', "Horizontal (m)", 8305},
    {"ProvPtTolV", 'd', "txtProvPtToleranceV", "m", "TL-", 40, 't', "Vertical (m)", 8305},
    {"UnitWts", 'b', "chkUnitWeights", "", "---", 0, ' ', "Apply unit weights (all obs) ", 8304},
    {"CSD", 'b', "chkOutputCSD", "", "---", 0, ' ', "Output to Landgate CSD file (WA)  ", 8312},
    {"Dump", 'b', "chkMatrixDump", "", "---", 0, ' ', "Dump matrix contents to LOG file  ", 8312},
    {"SP1", 'b', "chkOutputSP1", "", "---", 0, ' ', "List results of SP1 class testing  ", 8312},
    {"ScaleEE", 'b', "chkScaleErrorEllipses", "", "---", 0, ' ',
        "Re-Scale weights && error ellipses for VF=1 ", 8310},
    {"ConvLimitH", 'd', "txtConvergeLimitH", "m", "CL-", 41, 'v', "Horizontal (m)", 8306},
    {"ConvLimitV", 'd', "txtConvergeLimitV", "m", "CL-", 42, 'v', "Vertical (m)", 8306},
    {"AngleSD", 'd', "txtSDHAngle", "seconds", "S02", 4, 'o', "Horizontal Angles (secs)", 8301},
    {"AngleCentr", 'd', "txtCentHA", "m", "D-2", 5, '1', "Horizontal Angles (secs)", 8302},
    {"DisConst", 'd', "txtSDConHDis", "m", "DB2", 10, 'o', "Horiz. Distances (m)", 8301},
    {"DisPPM", 'd', "txtSDPPMHDis", "ppm", "PB2", 11, 'p', "Horiz. Distances (m)", 8301},
    {"HtDiffSD", 'd', "txtSDHtDiff", "m", "D02", 14, 'o', "VC / Height Diff. (m)", 8301},
    {"Iterations", 'i', "cboIterations", "iterations", "---", 0, 'v', "Iteration Limit", 8306},
    {"AzimuthSD", 'd', "txtSDAzimuth", "seconds", "S02", 1, 'o', "Azimuth / Bearing (secs)", 8301},
    {"AzimuthCent", 'd', "txtCentAz", "m", "D-2", 2, '1', "Azimuth / Bearing (secs)", 8302},
    {"DirectionSD", 'd', "txtSDDirection", "seconds", "S02", 7, 'o', "Directions (secs)", 8301},
    {"DirectionCent", 'd', "txtCentDir", "m", "D-2", 8, '1', "Directions (secs)", 8302},
    {"SlopeDisPPM", 'd', "txtSDPPMSDis", "ppm", "PB3", 18, 'p', "Slope Distances (m)", 8301},
    {"SlopeDisConst", 'd', "txtSDConSDis", "m", "DB3", 17, 'o', "Slope Distances (m)", 8301},
    {"ZenAngSD", 'd', "txtSDZenAng", "seconds", "S03", 21, 'o', "Zenith Angles (secs)", 8301},
    {"CoordsSD", 'd', "txtSDCoords", "m", "D03", 24, 'o', "Coordinate Obs / GPS (m)", 8301},
    {"VectorsSD", 'd', "txtSDVectors", "m", "D03", 27, 'o', "GPS Vectors (m)", 8301},
    {"SDConstrFactor", 'l', "txtConstrFactor", "divisor", "F0-", 30, 'c', "'Fixed' obs Constraint Factor: StdDev /",
        8303},
    {"AutoRescale", 'b', "chkAutoRescale", "", "---", 0, ' ', "Auto-Rescale if tests OK ", 8310},
    {"RelaxObsInErr", 'b', "chkRelaxObsInErr", "", "---", 0, ' ', "Relax Std Dev for tolerance errors ",
        8311},
    {"Corrections", 't', "cboCorrections", "", "---", 0, 'g', "Preferred label", 8309},
    {"ConfLevelChiSquared", 's', "cboChiSquared", "%", "---", 0, 'l', "Chi-Squared Test", 8307},
    {"ConfLevelEllipses", 'l', "cboEllipses", "%", "---", 0, 'l', "Error Ellipses", 8307},
    {"ConfLevelMDE", 't', "cboMDE", "%", "---", 0, 'l', "MDEs 2-tail/1-tail", 8307},
    {"ConfLevelOutliers", 's', "cboOutliers", "%", "---", 0, 'l', "Outlier Detection", 8307},
    {"HorDistCent", 'd', "txtCentHD", "m", "D-2", 12, '1', "Horiz. Distances (m)", 8302},
    {"SlopeDistCentH", 'd', "txtCentSDh", "m", "D-3", 19, '1', "Slope Distances (m)", 8302},
    {"HtDiffCent", 'd', "txtCentHtDiff", "m", "D-2", 15, '1', "VC / Height Diff. (m)", 8302},
    {"ZenAngleCentH", 'd', "txtCentZAh", "m", "D-3", 22, '1', "Zenith Angles (secs)", 8302},
    {"CoordsCentH", 'd', "txtCentCoordsH", "m", "D-3", 25, '1', "Coordinate Obs / GPS (m)", 8302},
    {"CoordsCentV", 'd', "txtCentCoordsV", "m", "D-3", 26, '2', "Coordinate Obs / GPS (m)", 8302},
    {"VectorsCentH", 'd', "txtCentVectorsH", "m", "D-3", 28, '1', "GPS Vectors (m)", 8302},
    {"AngleTgtCentr", 'd', "txtCentTgtHA", "m", "D-2", 6, '2', "Horizontal Angles (secs)", 8302},
    {"AzimuthTgtCent", 'd', "txtCentTgtAz", "m", "D-2", 3, '2', "Azimuth / Bearing (secs)", 8302},
    {"DirectionTgtCent", 'd', "txtCentTgtDir", "m", "D-2", 9, '2', "Directions (secs)", 8302},
    {"HorDistTgtCent", 'd', "txtCentTgtHD", "m", "D-2", 13, '2', "Horiz. Distances (m)", 8302},
    {"SlopeDistCentV", 'd', "txtCentSDv", "m", "D-3", 20, '2', "Slope Distances (m)", 8302},
    {"HtDiffTgtCent", 'd', "txtCentTgtHtDiff", "m", "D-2", 16, '2', "VC / Height Diff. (m)", 8302},
    {"ZenAngleCentV", 'd', "txtCentZAv", "m", "D-3", 23, '2', "Zenith Angles (secs)", 8302},
    {"VectorsCentV", 'd', "txtCentVectorsV", "m", "D-3", 29, '2', "GPS Vectors (m)", 8302},
    {"OutlierTest", 'i', "cboOutlierTest", "", "---", 0, 'g', "Outlier Test", 8308},
    {"SaveDBPoints", 'b', "", "", "---", 0, ' ', "", 0},
    {"SaveDBPtsFixed", 'b', "", "", "---", 0, ' ', "", 0},
    {"SavePtEntry", 'b', "", "", "---", 0, ' ', "", 0},
    {"SavePtEntryFixed", 'b', "", "", "---", 0, ' ', "", 0},
    {"SavePtEntryOpt", 'i', "", "", "---", 0, ' ', "", 0},
};

// The order in which a record is loaded. From and to option sets, and to a record, the label comes before the
// test.
inline constexpr std::string_view lsLoadFacts[] = {"ProvPtTolH", "ProvPtTolV", "ConvLimitH", "ConvLimitV",
    "AngleSD", "AngleCentr", "DisConst", "DisPPM", "HtDiffSD", "UnitWts", "Dump", "CSD", "SP1", "ScaleEE",
    "Iterations", "AzimuthSD", "DirectionSD", "SlopeDisPPM", "SlopeDisConst", "ZenAngSD", "CoordsSD",
    "VectorsSD", "AzimuthCent", "DirectionCent", "HorDistCent", "HtDiffCent", "AngleTgtCentr",
    "AzimuthTgtCent", "DirectionTgtCent", "HorDistTgtCent", "HtDiffTgtCent", "SlopeDistCentH",
    "ZenAngleCentH", "CoordsCentH", "VectorsCentH", "SlopeDistCentV", "ZenAngleCentV", "CoordsCentV",
    "VectorsCentV", "SDConstrFactor", "AutoRescale", "RelaxObsInErr", "OutlierTest", "Corrections",
    "ConfLevelChiSquared", "ConfLevelEllipses", "ConfLevelMDE", "ConfLevelOutliers"};

} // namespace genutil::fake
