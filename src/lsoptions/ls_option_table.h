#pragma once

#include "hostif/record.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace genutil {

// A member of the option set; the alternative is the member's type.
using LSMember = std::variant<Property<double>, Property<float>, Property<std::int16_t>,
    Property<std::int32_t>, Property<bool>, Property<std::string>>;

// What the option dialogs edit; the point-save dialog knows the first and the last.
namespace lsmode {
inline constexpr std::int16_t OptionSet = 1;
inline constexpr std::int16_t Page = 2;
inline constexpr std::int16_t Header = 3;
inline constexpr std::int16_t HeaderAndSet = 4;
} // namespace lsmode

// What shows an option: a text box, a check box, a list by its items' texts or by their codes; or the dialog
// of the point-save options.
enum class LSControl { Box, Check, TextList, CodeList, PointSave };

// By which of the host's display formats a box shows its number.
enum class LSFormat { AsIs, Seconds, Distance, PPM, ConstraintFactor, Convergence, Tolerance };

// What a box is checked for when the user leaves it: nothing; a number that is not zero; that not both parts
// of a distance's standard deviation are zero; a number without its sign that is not zero.
enum class LSCheck { Nothing, NotZero, NotBothZero, LimitNotZero };

// The rows of the standard deviations: of no row; of two- or three-dimensional observations.
enum class LSRow { Elsewhere, Plane, Spatial };

struct LSOption {
    int number; // in the interface of the option set, from 1
    LSMember member;
    LSControl kind;
    const char* control;
    const char* unit; // "" for none
    const char* help; // what the option does, for its tooltip
    LSFormat format = LSFormat::AsIs;
    LSCheck check = LSCheck::Nothing;
    LSRow row = LSRow::Elsewhere;
    const char* designText = ""; // what a box holds before anything is loaded
    int pairedWith = 0;          // NotBothZero: the number of the other part

    // Also the name of the field that stores it.
    constexpr std::string_view name() const {
        return std::visit([](const auto& property) { return std::string_view(property.name); }, member);
    }
};

inline constexpr std::size_t lsOptionCount = 53;

// All options by their numbers; those of the point-save dialog are the last five.
std::span<const LSOption, lsOptionCount> lsOptions();
const LSOption& lsOption(int number);

// The text of a box that the user never sees in use.
inline constexpr const char* hiddenText = "(Hidden)";

// The orders in which options 1 to 48 are loaded and saved: handlers run as controls are filled, so they
// matter.
using LSOrder = std::array<int, 48>;
const LSOrder& lsLoadOrder();        // from a record
const LSOrder& lsDefaultLoadOrder(); // from an option set
const LSOrder& lsSaveOrder();        // to a record
const LSOrder& lsDefaultSaveOrder(); // to an option set

// An item of a list. A percentage is shown as a number of the user's locale.
struct LSChoice {
    const char* text; // null: the number
    double number;
    std::int32_t code;
};

// The items of the option's list, and the position that is selected first.
struct LSList {
    int option;
    std::span<const LSChoice> choices;
    std::int16_t position;
};
// In the order in which the lists are filled.
std::span<const LSList> lsLists();

} // namespace genutil
