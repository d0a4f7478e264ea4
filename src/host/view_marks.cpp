#include "host/view_marks.h"

#include "host/automation_values.h"
#include "host/record_settings.h"

#include <algorithm>

namespace kestal {
namespace {

constexpr const char* section = "View";
constexpr const char* scaleBarKey = "picScaleBar";
constexpr std::size_t mostLabels = 2;

using enum MarkGroup;
constexpr std::array<ViewMark, static_cast<std::size_t>(Mark::Count)> marks{{
    {"mnuViewPtOnly", "Points &only", Points, false},
    {"mnuViewPtNum", "Point &numbers", Points, true},
    {"mnuViewPtAlpha", "&Alpha IDs", Points, false},
    {"mnuViewPtDesc", "&Descriptions", Points, false},
    {"mnuViewPtHts", "&Heights", Points, false},
    {"mnuViewPtDeriv", "De&rivations", Points, false},
    {"mnuViewPtNVal", "&Undulations (N-Values)", Points, false},
    {"mnuViewPtVertDef", "&Vertical Deflections", Points, false},
    {"mnuViewPtLSGPSPts", "LS &GPS Points", Points, true},
    {"mnuViewLinesHt", "Le&vels / Ht.Diffs", Lines, true},
    {"mnuViewLinesRad", "&Radiations", Lines, true},
    {"mnuViewLinesTrav", "&Traverse", Lines, true},
    {"mnuViewLinesRef", "Re&ference Lines", Lines, true},
    {"mnuViewLinesLSang", "LS &Angles/Brgs/Dir'ns", Lines, true},
    {"mnuViewLinesLSdis", "LS &Horiz. Distances", Lines, true},
    {"mnuViewLinesLSSDis", "LS &Slope Distances", Lines, true},
    {"mnuViewLinesLSVA", "LS Vert&ical Angles", Lines, true},
    {"mnuViewLinesLSGPS", "LS &GPS Vectors", Lines, true},
    {"mnuViewGeoid", "&Geoid model", General, false},
    {"mnuViewPlotGeog", "Plot Geograp&hic", General, false},
    {"mnuViewScaleBar", "&Scale bar", General, true},
    {"mnuViewDefault", "Default pos&ition", General, true},
    {"mnuViewZoneBdys", "&Zone boundaries", General, false},
}};

bool isLabel(Mark mark) {
    return mark >= Mark::PointNumbers && mark <= Mark::Deflections;
}

std::string keyOf(const ViewMark& mark) {
    return std::string(mark.name).substr(std::string_view("mnuView").size());
}

} // namespace

std::span<const ViewMark> viewMarks() {
    return marks;
}

ViewMarks::ViewMarks() {
    std::ranges::transform(marks, set_.begin(), &ViewMark::initial);
    oldestFirst_ = labels();
}

void ViewMarks::assign(bool& target, bool on, Mark mark) {
    if (target == on)
        return;
    target = on;
    isChanged_ = true;
    if (changed)
        changed(mark);
}

void ViewMarks::set(Mark mark, bool on) {
    if (isLabel(mark) && on != isSet(mark)) {
        std::erase(oldestFirst_, mark);
        if (on)
            oldestFirst_.push_back(mark);
    }
    assign(set_[static_cast<std::size_t>(mark)], on, mark);
    if (mark == Mark::ScaleBar || mark == Mark::PlotGeographic)
        showScaleBar(isSet(Mark::ScaleBar) && !isSet(Mark::PlotGeographic));
}

void ViewMarks::showScaleBar(bool on) {
    assign(showsScaleBar_, on, Mark::Count);
}

void ViewMarks::choose(Mark mark, bool on) {
    set(mark, on);
    if (mark == Mark::PointsOnly && on)
        while (!oldestFirst_.empty())
            set(oldestFirst_.front(), false);
    while (oldestFirst_.size() > mostLabels)
        set(oldestFirst_.front(), false);
    set(Mark::PointsOnly, oldestFirst_.empty());
}

std::vector<Mark> ViewMarks::labels() const {
    std::vector<Mark> shown;
    for (Mark mark = Mark::PointNumbers; isLabel(mark); mark = static_cast<Mark>(static_cast<int>(mark) + 1))
        if (isSet(mark))
            shown.push_back(mark);
    if (shown.size() > mostLabels)
        shown.erase(shown.begin(), shown.end() - mostLabels);
    return shown;
}

QStringList ViewMarks::read(const IniText& settings) {
    QStringList faults;
    const auto read = [&](const std::string& key, bool& target) {
        try {
            if (const auto stored = settings.value(section, key))
                target = truthOf(k_genutil::Variant(std::string_view(*stored)));
        } catch (const std::exception& error) {
            faults += unusedSetting(section, key, error.what());
        }
    };
    for (std::size_t i = 0; i < marks.size(); ++i)
        read(keyOf(marks[i]), set_[i]);
    showsScaleBar_ = isSet(Mark::ScaleBar) && !isSet(Mark::PlotGeographic);
    read(scaleBarKey, showsScaleBar_);
    oldestFirst_ = labels();
    return faults;
}

std::vector<Setting> ViewMarks::settings() const {
    const auto text = [](bool on) { return std::string(on ? "True" : "False"); };
    std::vector<Setting> settings{{section, scaleBarKey, text(showsScaleBar_)}};
    for (std::size_t i = 0; i < marks.size(); ++i)
        settings.push_back({section, keyOf(marks[i]), text(set_[i])});
    return settings;
}

std::vector<Setting> ViewMarks::knownSettings(const IniText& stored) const {
    std::vector<Setting> known = settings();
    if (!stored.value(section, scaleBarKey))
        std::erase_if(known, [](const Setting& each) { return each.key == scaleBarKey; });
    return known;
}

} // namespace kestal
