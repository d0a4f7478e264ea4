#include "lsoptions/ls_layout.h"

#include "hostif/error.h"

#include <array>
#include <string>
#include <vector>

namespace genutil {
namespace {

constexpr std::array<LSObservation, 9> observations{{
    {"lblAzimuth", "Azimuth / Bearing (secs)", 16, 0, 17, 41, false},
    {"lblHAngle", "Horizontal Angles (secs)", 10, 0, 11, 40, false},
    {"lblDirection", "Directions (secs)", 18, 0, 19, 42, false},
    {"lblHDis", "Horiz. Distances (m)", 12, 13, 33, 43, false},
    {"lblHtDiff", "VC / Height Diff. (m)", 14, 0, 35, 45, false},
    {"lblSDis", "Slope Distances (m)", 21, 20, 34, 44, true},
    {"lblZenAng", "Zenith Angles (secs)", 22, 0, 36, 46, true},
    {"lblCoords", "Coordinate Obs / GPS (m)", 23, 0, 37, 38, true},
    {"lblVectors", "GPS Vectors (m)", 24, 0, 39, 47, true},
}};

constexpr std::array<LSCaption, 1> belowDeviations{
    {{"lblConstrFactor", "'Fixed' obs Constraint Factor: StdDev /", 25}}};
constexpr std::array<LSCaption, 2> tolerances{
    {{"lblProvPtToleranceH", "Horizontal (m)", 1}, {"lblProvPtToleranceV", "Vertical (m)", 2}}};
constexpr std::array<LSCaption, 3> convergence{{{"lblConvergeLimitH", "Horizontal (m)", 8},
    {"lblConvergeLimitV", "Vertical (m)", 9}, {"lblIterations", "Iteration Limit", 15}}};
constexpr std::array<LSCaption, 4> confidence{
    {{"lblChiSquared", "Chi-Squared Test", 29}, {"lblEllipses", "Error Ellipses", 30},
        {"lblMDE", "MDEs 2-tail/1-tail", 31}, {"lblOutlierDetect", "Outlier Detection", 32}}};
constexpr std::array<LSCaption, 2> general{
    {{"lblOutlierTest", "Outlier Test", 48}, {"lblCorrections", "Preferred label", 28}}};

struct CheckCaption {
    int option;
    const char* caption;
};
constexpr std::array<CheckCaption, 7> checkCaptions{{
    {3, "Apply unit weights (all obs) "},
    {5, "Dump matrix contents to LOG file  "},
    {7, "Re-Scale weights && error ellipses for VF=1 "},
    {6, "List results of SP1 class testing  "},
    {4, "Output to Landgate CSD file (WA)  "},
    {26, "Auto-Rescale if tests OK "},
    {27, "Relax Std Dev for tolerance errors "},
}};
constexpr std::array<int, 1> deviationChecks{3};
constexpr std::array<int, 6> generalChecks{7, 26, 27, 6, 4, 5};

constexpr std::array<LSGroup, 5> groups{{
    {LSFrame::Deviations, "Default Standard Deviations", belowDeviations, deviationChecks},
    {LSFrame::Tolerance, "Provisional point tolerance", tolerances, {}},
    {LSFrame::Convergence, "Convergence criterion", convergence, {}},
    {LSFrame::Confidence, "Confidence Levels %", confidence, {}},
    {LSFrame::General, "General settings", general, generalChecks},
}};

namespace topic {
constexpr int deviation = 8301, centring = 8302, constraint = 8303, unitWeights = 8304, tolerance = 8305,
              convergence = 8306, confidence = 8307, outlierTest = 8308, label = 8309, rescaling = 8310,
              relaxing = 8311, output = 8312;
} // namespace topic

struct TopicRange {
    int first, last; // options
    int topic;
};
constexpr std::array<TopicRange, 22> topics{{{1, 2, topic::tolerance}, {3, 3, topic::unitWeights},
    {4, 6, topic::output}, {7, 7, topic::rescaling}, {8, 9, topic::convergence}, {10, 10, topic::deviation},
    {11, 11, topic::centring}, {12, 14, topic::deviation}, {15, 15, topic::convergence},
    {16, 16, topic::deviation}, {17, 17, topic::centring}, {18, 18, topic::deviation},
    {19, 19, topic::centring}, {20, 24, topic::deviation}, {25, 25, topic::constraint},
    {26, 26, topic::rescaling}, {27, 27, topic::relaxing}, {28, 28, topic::label},
    {29, 32, topic::confidence}, {33, 47, topic::centring}, {48, 48, topic::outlierTest}, {49, 53, 0}}};

// The standard deviations are numbered from 1, what belongs to them on the form next; the limits from 39.
constexpr int firstLimitFocus = 39;

std::vector<LSFocus> focusOrder() {
    std::vector<LSFocus> order;
    int next = 1;
    const auto add = [&](int option) {
        if (option != 0)
            order.push_back({option, next++});
    };
    for (const LSObservation& row : observations)
        for (const int option : {row.deviation, row.perMillion, row.firstCentring, row.secondCentring})
            add(option);
    for (const LSGroup& group : groups) {
        if (group.frame == LSFrame::Tolerance)
            next = firstLimitFocus;
        for (const LSCaption& each : group.options)
            add(each.option);
        for (const int option : group.checks)
            add(option);
    }
    return order;
}

} // namespace

std::span<const LSObservation> lsObservations() {
    return observations;
}

std::span<const LSGroup> lsGroups() {
    return groups;
}

std::string_view lsCheckCaption(int option) {
    for (const CheckCaption& each : checkCaptions)
        if (each.option == option)
            return each.caption;
    throw Error(errors::OutOfRange, "Option " + std::to_string(option) + " is no check box");
}

int lsHelpTopic(int option) {
    for (const TopicRange& range : topics)
        if (range.first <= option && option <= range.last)
            return range.topic;
    throw Error(errors::OutOfRange, "There is no option " + std::to_string(option));
}

std::span<const LSFocus> lsFocusOrder() {
    static const std::vector<LSFocus> order = focusOrder();
    return order;
}

} // namespace genutil
