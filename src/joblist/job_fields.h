#pragma once

#include "frame/component.h"
#include "hostif/program.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <variant>

namespace genutil {

// The host's record objects that hold a job's details between them.
enum class JobRecord { Details, Configuration, General };

// A member of one of them; the alternative is the member's type.
using JobMember = std::variant<Property<std::string>, Property<std::uint8_t>, Property<std::int16_t>,
    Property<std::int32_t>, Property<double>, Property<bool>, Property<Value>>;

// What a Null field leaves in its member. Texts are empty whatever the rule.
enum class OnNull { Zero, MinusOne };

// What becomes of a field's value on its way to the member, beside the conversion to the member's type.
enum class FieldRule {
    AsIs,
    Transformed,     // strUtil TransformValue with the code -5; not for Null
    NormalisedName,  // names of interpolation methods that earlier versions stored become today's
    StarMeansNothing // "*" becomes ""
};

// One field of the job details table. The member that receives it has the field's name.
struct JobField {
    JobRecord record;
    JobMember member;
    OnNull onNull = OnNull::Zero;
    FieldRule rule = FieldRule::AsIs;

    constexpr std::string_view name() const {
        return std::visit([](const auto& property) { return std::string_view(property.name); }, member);
    }
};

// All fields that are kept in record objects, in the order in which they are read.
std::span<const JobField> jobFields();

// Reads the first record of the job details table into the record objects; each that is null when it is first
// needed is replaced by a new one of the host's. A field that the database lacks leaves its member as it was.
// `ok` is False for an incomplete database, one without a record: then the job details alone are written, and
// say so.
void ReadJobDetailsTemp(Component& component, const std::shared_ptr<Recordset>& detailsRset,
    RecordPtr& jobCfg, RecordPtr& jobGeneral, RecordPtr& jobDetails, bool& ok);

} // namespace genutil
