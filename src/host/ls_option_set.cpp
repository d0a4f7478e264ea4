#include "host/ls_option_set.h"

namespace kestal {
namespace {

constexpr const char* section = "LeastSquares";

constexpr const char* levelCode = "0.1 % (10: one standard deviation)";
constexpr double tolerance = 10;
constexpr double angleDeviation = 10;
constexpr double lengthDeviation = 0.005;
constexpr double lengthPpm = 10;
constexpr double gpsDeviation = 0.001;
constexpr double centring = 0.005;
constexpr double noCentring = 0; // an antenna's is part of what its solution says
constexpr std::int16_t tauTest = 2;

Variant no() {
    return Variant(false);
}
Variant yes() {
    return Variant(true);
}
LsOption metres(const char* name, double initial) {
    return {name, Variant(initial), "m"};
}
LsOption seconds(const char* name, double initial) {
    return {name, Variant(initial), "seconds"};
}
LsOption ppm(const char* name, double initial) {
    return {name, Variant(initial), "ppm"};
}
LsOption whole(const char* name, std::int32_t initial, const char* unit) {
    return {name, Variant(initial), unit};
}
LsOption code(const char* name, std::int16_t initial, const char* meaning) {
    return {name, Variant(initial), meaning};
}

} // namespace

std::span<const LsOption> lsOptions() {
    // Error ellipses are scaled by the variance factor that was found, which guessed standard deviations
    // need; that it happens unasked, and that fixed points or the entry tables change, has to be chosen.
    static const LsOption options[] = {
        metres("ProvPtTolH", tolerance),
        metres("ProvPtTolV", tolerance),
        {"UnitWts", no(), ""},
        {"CSD", no(), ""},
        {"Dump", no(), ""},
        {"SP1", no(), ""},
        {"ScaleEE", yes(), ""},
        metres("ConvLimitH", 0.0005),
        metres("ConvLimitV", 0.001),
        seconds("AngleSD", angleDeviation),
        metres("AngleCentr", centring),
        metres("DisConst", lengthDeviation),
        ppm("DisPPM", lengthPpm),
        metres("HtDiffSD", lengthDeviation),
        code("Iterations", 10, "iterations"),
        seconds("AzimuthSD", angleDeviation),
        metres("AzimuthCent", centring),
        seconds("DirectionSD", angleDeviation),
        metres("DirectionCent", centring),
        ppm("SlopeDisPPM", lengthPpm),
        metres("SlopeDisConst", lengthDeviation),
        seconds("ZenAngSD", angleDeviation),
        metres("CoordsSD", gpsDeviation),
        metres("VectorsSD", gpsDeviation),
        whole("SDConstrFactor", 1000, "divisor"),
        {"AutoRescale", no(), ""},
        {"RelaxObsInErr", no(), ""},
        {"Corrections", Variant("1"), "1: correction, 2: residual"},
        {"ConfLevelChiSquared", singleVariant(950), levelCode},
        whole("ConfLevelEllipses", 950, levelCode),
        {"ConfLevelMDE", Variant("9980"), "9980: 99 % two-tailed, 80 % one-tailed"},
        {"ConfLevelOutliers", singleVariant(990), levelCode},
        metres("HorDistCent", centring),
        metres("SlopeDistCentH", centring),
        metres("HtDiffCent", centring),
        metres("ZenAngleCentH", centring),
        metres("CoordsCentH", noCentring),
        metres("CoordsCentV", noCentring),
        metres("VectorsCentH", noCentring),
        metres("AngleTgtCentr", centring),
        metres("AzimuthTgtCent", centring),
        metres("DirectionTgtCent", centring),
        metres("HorDistTgtCent", centring),
        metres("SlopeDistCentV", centring),
        metres("HtDiffTgtCent", centring),
        metres("ZenAngleCentV", centring),
        metres("VectorsCentV", noCentring),
        code("OutlierTest", tauTest, "1: Baarda W, 2: Pope tau, 3: standardised residual, 4: tau-max"),
        {"SaveDBPoints", yes(), ""},
        {"SaveDBPtsFixed", no(), ""},
        {"SavePtEntry", no(), ""},
        {"SavePtEntryFixed", no(), ""},
        code("SavePtEntryOpt", 0, "0: add, 1: replace, 2: both, -1: none"),
    };
    return options;
}

namespace records {

const RecordClass& lsOptPref() {
    static const RecordClass record = [] {
        RecordClass made{"k_gencvf.LSOptPref", {}};
        for (const LsOption& option : lsOptions())
            made.fields.push_back({option.name, option.initial});
        return made;
    }();
    return record;
}

} // namespace records

Ref<RecordObject> makeLsOptionSet() {
    return Ref<RecordObject>::adopt(new RecordObject(records::lsOptPref()));
}

QStringList readLsOptionSet(RecordObject& optionSet, const IniText& settings) {
    return readRecord(optionSet, settings, section);
}

std::vector<Setting> lsOptionSettings(const RecordObject& optionSet) {
    return settingsOf(optionSet, section);
}

} // namespace kestal
