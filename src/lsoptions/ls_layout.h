#pragma once

#include <span>
#include <string_view>

// How the options stand on the form: the texts beside their controls and the order of the focus. Options are
// named by their numbers; 0 stands for none.
namespace genutil {

// A row of the standard deviations: one kind of observation.
struct LSObservation {
    const char* label; // the label's name
    const char* caption;
    int deviation;
    int perMillion; // the part that grows with the length
    int firstCentring, secondCentring;
    bool isSpatial; // centring is horizontal and vertical, not of instrument and target
};
std::span<const LSObservation> lsObservations();

// An option with a caption in front of it.
struct LSCaption {
    const char* label;
    const char* caption;
    int option;
};
// What stands below the standard deviations, by the frames that group it.
enum class LSFrame { Deviations, Tolerance, Convergence, Confidence, General };
struct LSGroup {
    LSFrame frame;
    const char* caption;
    std::span<const LSCaption> options;
    std::span<const int> checks;
};
std::span<const LSGroup> lsGroups();

// The caption of a check box.
std::string_view lsCheckCaption(int option);

// The help topic of an option's control; controls of one kind share theirs.
int lsHelpTopic(int option);

// An option's number in the order in which Tab moves through the dialog; numbers rise, but some are left out.
struct LSFocus {
    int option;
    int number;
};
std::span<const LSFocus> lsFocusOrder();

inline constexpr const char* spatialTag = "3D";
inline constexpr const char* deviationTag = "StdDev";

} // namespace genutil
