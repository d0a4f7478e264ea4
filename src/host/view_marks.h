#pragma once

#include "host/settings_file.h"

#include <QStringList>

#include <array>
#include <functional>
#include <span>

namespace kestal {

/// The marks of the View menu, which say what the plot shows, in the order of the menu.
enum class Mark {
    PointsOnly,
    PointNumbers,
    AlphaIds,
    Descriptions,
    Heights,
    Derivations,
    Undulations,
    Deflections,
    GpsPoints,
    HeightLines,
    Radiations,
    Traverse,
    ReferenceLines,
    LsAngles,
    LsHorizontalDistances,
    LsSlopeDistances,
    LsVerticalAngles,
    LsGpsVectors,
    Geoid,
    PlotGeographic,
    ScaleBar,
    DefaultPosition,
    ZoneBoundaries,
    Count
};

/// Where a mark stands in the menu.
enum class MarkGroup { Points, Lines, General };

struct ViewMark {
    const char* name; ///< of the menu item
    const char* caption;
    MarkGroup group;
    bool initial;
};

/// All of them, in the order of Mark.
std::span<const ViewMark> viewMarks();

/// Which marks are set. At most two labels stand beside a point; "Points only" is set when there is none.
class ViewMarks {
public:
    ViewMarks();

    bool isSet(Mark mark) const { return set_[static_cast<std::size_t>(mark)]; }
    void set(Mark mark, bool on);
    /// As the user sets it in the menu: "Points only" and the labels exclude each other, and of three labels
    /// the one that was set first goes.
    void choose(Mark mark, bool on);
    /// The labels that the plot shows; of more than two marks the later ones.
    std::vector<Mark> labels() const;

    /// Whether the scale bar is to be seen. Setting ScaleBar or PlotGeographic sets it: a geographic plot has
    /// none.
    bool showsScaleBar() const { return showsScaleBar_; }
    void showScaleBar(bool on);

    /// Called for each mark that has changed, and for the scale bar with Mark::Count.
    std::function<void(Mark)> changed;

    /// Takes over what is stored. A value that is neither True nor False leaves the mark and is named, with
    /// the reason, in the result.
    QStringList read(const IniText& settings);
    std::vector<Setting> settings() const;
    /// The settings as they count after `stored` was read: what it lacks is not known where it depends on
    /// others.
    std::vector<Setting> knownSettings(const IniText& stored) const;
    /// Whether a mark was changed since they were read or `keep` was called.
    bool isChanged() const { return isChanged_; }
    void keep() { isChanged_ = false; }

private:
    void assign(bool& target, bool on, Mark mark);

    std::array<bool, static_cast<std::size_t>(Mark::Count)> set_{};
    std::vector<Mark> oldestFirst_; // the labels in the order in which they were set
    bool showsScaleBar_ = true;
    bool isChanged_ = false;
};

} // namespace kestal
