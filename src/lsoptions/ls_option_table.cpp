#include "lsoptions/ls_option_table.h"

#include <algorithm>

namespace genutil {
namespace {

using enum LSControl;
using enum LSFormat;
using enum LSCheck;
using enum LSRow;
using Text = std::string;
using Int16 = std::int16_t;
using Int32 = std::int32_t;

constexpr std::array<LSOption, lsOptionCount> options{{
    {1, Property<double>{"ProvPtTolH"}, Box, "txtProvPtToleranceH", "m",
        "How far a provisional point may move in position before the adjustment warns of it.", Tolerance,
        LimitNotZero, Elsewhere, "10.000"},
    {2, Property<double>{"ProvPtTolV"}, Box, "txtProvPtToleranceV", "m",
        "How far a provisional point may move in height before the adjustment warns of it.", Tolerance,
        LimitNotZero, Elsewhere, "10.000"},
    {3, Property<bool>{"UnitWts"}, Check, "chkUnitWeights", "",
        "Gives every observation the weight 1; the standard deviations above are then not used."},
    {4, Property<bool>{"CSD"}, Check, "chkOutputCSD", "",
        "Writes the adjusted network to a CSD file for lodgement in Western Australia."},
    {5, Property<bool>{"Dump"}, Check, "chkMatrixDump", "",
        "Lists the matrices of the adjustment in the log file; the log of a large network becomes long."},
    {6, Property<bool>{"SP1"}, Check, "chkOutputSP1", "",
        "Lists how the adjusted points meet the classes of the SP1 standard."},
    {7, Property<bool>{"ScaleEE"}, Check, "chkScaleErrorEllipses", "",
        "Scales weights and error ellipses so that the variance factor becomes 1."},
    {8, Property<double>{"ConvLimitH"}, Box, "txtConvergeLimitH", "m",
        "The adjustment has converged when no position moves by more than this in an iteration.", Convergence,
        LimitNotZero, Elsewhere, "0.0005"},
    {9, Property<double>{"ConvLimitV"}, Box, "txtConvergeLimitV", "m",
        "The adjustment has converged when no height moves by more than this in an iteration.", Convergence,
        LimitNotZero, Elsewhere, "0.001"},
    {10, Property<double>{"AngleSD"}, Box, "txtSDHAngle", "seconds",
        "Standard deviation of a horizontal angle.", Seconds, NotZero, Plane, " 10.0"},
    {11, Property<double>{"AngleCentr"}, Box, "txtCentHA", "m",
        "Centring of the instrument, horizontal angles.", Distance, Nothing, Plane, " 0.005"},
    {12, Property<double>{"DisConst"}, Box, "txtSDConHDis", "m",
        "Standard deviation of a horizontal distance, the part that does not depend on its length.", Distance,
        NotBothZero, Plane, " 0.005", 13},
    {13, Property<double>{"DisPPM"}, Box, "txtSDPPMHDis", "ppm",
        "Standard deviation of a horizontal distance, the part that grows with its length.", PPM, NotBothZero,
        Plane, " 10.0", 12},
    {14, Property<double>{"HtDiffSD"}, Box, "txtSDHtDiff", "m",
        "Standard deviation of a height difference or vertical component.", Distance, NotZero, Plane,
        " 0.005"},
    {15, Property<Int16>{"Iterations"}, TextList, "cboIterations", "iterations",
        "The adjustment stops after this many iterations, converged or not."},
    {16, Property<double>{"AzimuthSD"}, Box, "txtSDAzimuth", "seconds",
        "Standard deviation of an azimuth or bearing.", Seconds, NotZero, Plane, " 10.0"},
    {17, Property<double>{"AzimuthCent"}, Box, "txtCentAz", "m", "Centring of the instrument, azimuths.",
        Distance, Nothing, Plane, " 0.005"},
    {18, Property<double>{"DirectionSD"}, Box, "txtSDDirection", "seconds",
        "Standard deviation of a direction.", Seconds, NotZero, Plane, " 10.0"},
    {19, Property<double>{"DirectionCent"}, Box, "txtCentDir", "m", "Centring of the instrument, directions.",
        Distance, Nothing, Plane, " 0.005"},
    {20, Property<double>{"SlopeDisPPM"}, Box, "txtSDPPMSDis", "ppm",
        "Standard deviation of a slope distance, the part that grows with its length.", PPM, NotBothZero,
        Spatial, " 10.0", 21},
    {21, Property<double>{"SlopeDisConst"}, Box, "txtSDConSDis", "m",
        "Standard deviation of a slope distance, the part that does not depend on its length.", Distance,
        NotBothZero, Spatial, " 0.005", 20},
    {22, Property<double>{"ZenAngSD"}, Box, "txtSDZenAng", "seconds", "Standard deviation of a zenith angle.",
        Seconds, NotZero, Spatial, " 10.0"},
    {23, Property<double>{"CoordsSD"}, Box, "txtSDCoords", "m",
        "Standard deviation of an observed coordinate, such as a GPS position.", Distance, NotZero, Spatial,
        "0.001"},
    {24, Property<double>{"VectorsSD"}, Box, "txtSDVectors", "m",
        "Standard deviation of a component of a GPS vector.", Distance, NotZero, Spatial, "0.001"},
    {25, Property<Int32>{"SDConstrFactor"}, Box, "txtConstrFactor", "divisor",
        "The standard deviation of an observation that is held fixed is divided by this.", ConstraintFactor,
        NotZero, Elsewhere, "1000"},
    {26, Property<bool>{"AutoRescale"}, Check, "chkAutoRescale", "",
        "Rescales without asking when the tests pass."},
    {27, Property<bool>{"RelaxObsInErr"}, Check, "chkRelaxObsInErr", "",
        "Gives observations with tolerance errors a larger standard deviation instead of leaving them out."},
    {28, Property<Text>{"Corrections"}, CodeList, "cboCorrections", "",
        "What the adjustment reports call the amounts by which observations were changed."},
    {29, Property<float>{"ConfLevelChiSquared"}, CodeList, "cboChiSquared", "%",
        "Confidence level of the chi-squared test of the variance factor."},
    {30, Property<Int32>{"ConfLevelEllipses"}, CodeList, "cboEllipses", "%",
        "Confidence level at which error ellipses are listed and drawn."},
    {31, Property<Text>{"ConfLevelMDE"}, CodeList, "cboMDE", "%",
        "Confidence levels of the minimal detectable errors, two-tailed and one-tailed."},
    {32, Property<float>{"ConfLevelOutliers"}, CodeList, "cboOutliers", "%",
        "Confidence level of the test that finds outliers."},
    {33, Property<double>{"HorDistCent"}, Box, "txtCentHD", "m",
        "Centring of the instrument, horizontal distances.", Distance, Nothing, Plane, " 0.005"},
    {34, Property<double>{"SlopeDistCentH"}, Box, "txtCentSDh", "m", "Horizontal centring, slope distances.",
        Distance, Nothing, Spatial, " 0.005"},
    {35, Property<double>{"HtDiffCent"}, Box, "txtCentHtDiff", "m",
        "Centring of the instrument, height differences.", Distance, Nothing, Plane, " 0.005"},
    {36, Property<double>{"ZenAngleCentH"}, Box, "txtCentZAh", "m", "Horizontal centring, zenith angles.",
        Distance, Nothing, Spatial, " 0.005"},
    {37, Property<double>{"CoordsCentH"}, Box, "txtCentCoordsH", "m",
        "Horizontal centring, observed coordinates.", Distance, Nothing, Spatial, hiddenText},
    {38, Property<double>{"CoordsCentV"}, Box, "txtCentCoordsV", "m",
        "Vertical centring, observed coordinates.", Distance, Nothing, Spatial, hiddenText},
    {39, Property<double>{"VectorsCentH"}, Box, "txtCentVectorsH", "m", "Horizontal centring, GPS vectors.",
        Distance, Nothing, Spatial, hiddenText},
    {40, Property<double>{"AngleTgtCentr"}, Box, "txtCentTgtHA", "m",
        "Centring of the targets, horizontal angles.", Distance, Nothing, Plane, " 0.005"},
    {41, Property<double>{"AzimuthTgtCent"}, Box, "txtCentTgtAz", "m", "Centring of the target, azimuths.",
        Distance, Nothing, Plane, " 0.005"},
    {42, Property<double>{"DirectionTgtCent"}, Box, "txtCentTgtDir", "m",
        "Centring of the target, directions.", Distance, Nothing, Plane, " 0.005"},
    {43, Property<double>{"HorDistTgtCent"}, Box, "txtCentTgtHD", "m",
        "Centring of the target, horizontal distances.", Distance, Nothing, Plane, " 0.005"},
    {44, Property<double>{"SlopeDistCentV"}, Box, "txtCentSDv", "m", "Vertical centring, slope distances.",
        Distance, Nothing, Spatial, " 0.005"},
    {45, Property<double>{"HtDiffTgtCent"}, Box, "txtCentTgtHtDiff", "m",
        "Centring of the target, height differences.", Distance, Nothing, Plane, " 0.005"},
    {46, Property<double>{"ZenAngleCentV"}, Box, "txtCentZAv", "m", "Vertical centring, zenith angles.",
        Distance, Nothing, Spatial, " 0.005"},
    {47, Property<double>{"VectorsCentV"}, Box, "txtCentVectorsV", "m", "Vertical centring, GPS vectors.",
        Distance, Nothing, Spatial, hiddenText},
    {48, Property<Int16>{"OutlierTest"}, CodeList, "cboOutlierTest", "",
        "The statistical test that finds outliers."},
    {49, Property<bool>{"SaveDBPoints"}, PointSave, "chkDBPoints", "",
        "Updates the points of the main database with the adjusted network points."},
    {50, Property<bool>{"SaveDBPtsFixed"}, PointSave, "chkDBPtsFixed", "",
        "Replaces fixed points of the main database, too."},
    {51, Property<bool>{"SavePtEntry"}, PointSave, "chkPtEntry", "",
        "Updates the point entry tables with the adjusted network points."},
    {52, Property<bool>{"SavePtEntryFixed"}, PointSave, "chkPtEntryFixed", "",
        "Replaces fixed points of the point entry tables, too."},
    {53, Property<Int16>{"SavePtEntryOpt"}, PointSave, "optPointEntry", "",
        "Which points of the entry tables are added or replaced."},
}};

// By the options' numbers.
constexpr LSOrder loadOrder{1, 2, 8, 9, 10, 11, 12, 13, 14, 3, 5, 4, 6, 7, 15, 16, 18, 20, 21, 22, 23, 24, 17,
    19, 33, 35, 40, 41, 42, 43, 45, 34, 36, 37, 39, 44, 46, 38, 47, 25, 26, 27, 48, 28, 29, 30, 31, 32};
constexpr int corrections = 28, outlierTest = 48, iterations = 15, convergenceLimitV = 9;

constexpr LSOrder correctionsFirst() {
    LSOrder order = loadOrder;
    std::swap(*std::ranges::find(order, corrections), *std::ranges::find(order, outlierTest));
    return order;
}

// And the iterations right after the convergence limits.
constexpr LSOrder iterationsEarly() {
    LSOrder order = correctionsFirst();
    const auto from = std::ranges::find(order, iterations);
    std::rotate(std::ranges::find(order, convergenceLimitV) + 1, from, from + 1);
    return order;
}

constexpr LSOrder exchanged = correctionsFirst();
constexpr LSOrder moved = iterationsEarly();

// ---- lists

constexpr std::array<LSChoice, 6> iterationLimits{{{nullptr, 1, 0}, {nullptr, 2, 0}, {nullptr, 5, 0},
    {nullptr, 10, 0}, {nullptr, 15, 0}, {nullptr, 20, 0}}};
constexpr std::array<LSChoice, 2> labels{{{"Correction", 0, 1}, {"Residual", 0, 2}}};
constexpr LSChoice oneSigma{"1-Sigma (Std)", 0, 10};
// Codes are ten times the percentage.
constexpr LSChoice percent(double level) {
    return {nullptr, level, static_cast<std::int32_t>(level * 10 + 0.5)};
}
constexpr std::array<LSChoice, 6> chiSquaredLevels{
    {oneSigma, percent(90), percent(95), percent(99), percent(99.5), percent(99.9)}};
constexpr std::array<LSChoice, 5> ellipseLevels{
    {oneSigma, percent(90), percent(95), percent(99), percent(99.5)}};
constexpr std::array<LSChoice, 1> mdeLevels{{{"99 / 80", 0, 9980}}};
constexpr std::array<LSChoice, 6> outlierLevels{
    {oneSigma, percent(90), percent(95), percent(99), percent(99.7), percent(99.9)}};
constexpr std::array<LSChoice, 4> outlierTests{{{"Baarda W-test", 0, 1}, {"Pope Tau-test", 0, 2},
    {"Tau-Max test", 0, 4}, {"Standardised Resid.", 0, 3}}};

constexpr std::array<LSList, 7> lists{
    {{iterations, iterationLimits, 3}, {corrections, labels, 0}, {29, chiSquaredLevels, 2},
        {30, ellipseLevels, 2}, {31, mdeLevels, 0}, {32, outlierLevels, 3}, {outlierTest, outlierTests, 1}}};

} // namespace

std::span<const LSOption, lsOptionCount> lsOptions() {
    return options;
}

const LSOption& lsOption(int number) {
    return options.at(std::size_t(number) - 1);
}

const LSOrder& lsLoadOrder() {
    return loadOrder;
}
const LSOrder& lsDefaultLoadOrder() {
    return exchanged;
}
const LSOrder& lsSaveOrder() {
    return exchanged;
}
const LSOrder& lsDefaultSaveOrder() {
    return moved;
}

std::span<const LSList> lsLists() {
    return lists;
}

} // namespace genutil
