#include "host/record_object.h"

#include "host/late_bound.h"

#include <algorithm>

namespace kestal {
namespace {

Variant text() {
    return Variant(std::string_view());
}
Variant text(const char* initial) {
    return Variant(std::string_view(initial));
}
Variant int16(std::int16_t initial = 0) {
    return Variant(initial);
}
Variant int32(std::int32_t initial = 0) {
    return Variant(initial);
}
Variant real() {
    return Variant(0.0);
}
Variant truth(bool initial = false) {
    return Variant(initial);
}

} // namespace

namespace records {

const RecordClass& prog() {
    static const RecordClass record{
        "k_gencvf.prog", {{"ProgramFolder", text()}, {"HelpSource", text()}, {"SettingsFile", text()},
                             {"SettingsWorkFile", text()}, {"DataPath", text()}, {"ListFolder", text()},
                             {"WindowsFolder", text()}, {"VersionText", text("8.2")},
                             {"FileViewState", int16()}, {"WipeAfterView", truth()},
                             {"IsWin9xFamily", truth()}, {"IsWinNTFamily", truth()}, {"Changed", truth()}}};
    return record;
}

const RecordClass& job() {
    static const RecordClass record{
        "k_gencvf.job", {{"JobPath", text()}, {"JobName", text()}, {"JobExtension", text()}}};
    return record;
}

const RecordClass& jobDetails() {
    static const RecordClass record{"k_gencvf.jobDetails",
        {{"Description", text()}, {"Surveyor", text()}, {"Date", text()}, {"Reference", text()}}};
    return record;
}

const RecordClass& jobCfg() {
    static const RecordClass record{"k_gencvf.jobCfg",
        {{"OutputDecH", int16(3)}, {"OutputDecV", int16(3)}, {"CoordType", int16(-1)}, {"Projection", text()},
            {"Zone", int16()}, {"NValue", real()}, {"DatumV", text()}, {"EarthRadius", Variant()},
            {"ApplyGeoid", truth()}, {"InterpMethod", text()}, {"GridFile", text()}, {"Spheroid", text()},
            {"DatumH", text()}, {"DeflectionNS", real()}, {"DeflectionEW", real()}, {"ApproxLat", int16(-1)},
            {"GeodeticDisplays", truth()}, {"NoLinearScale", truth()}}};
    return record;
}

const RecordClass& jobGeneral() {
    static const RecordClass record{"k_gencvf.jobGeneral",
        {{"ValidHorizPts", int32(-1)}, {"CurrentMaxPoint", int32(-1)}, {"FirstFreePoint", int32(-1)},
            {"FirstPointStored", int32(-1)}, {"TransType", text()}, {"GeoidUpdate", truth()},
            {"MinimumX", real()}, {"MinimumY", real()}, {"MaximumX", real()}, {"MaximumY", real()}}};
    return record;
}

} // namespace records

RecordObject::RecordObject(const RecordClass& recordClass)
    : AutomationObject(recordClass.name), class_(recordClass) {
    values_.reserve(class_.fields.size());
    for (std::size_t i = 0; i < class_.fields.size(); ++i) {
        const auto& field = class_.fields[i];
        values_.push_back(field.initial);
        hasChanged_ = hasChanged_ || sameName(field.name, "Changed");
        property(
            field.name, [this, i] { return values_[i]; }, [this, i](const VARIANT& v) { assign(i, v); });
    }
    method("Clone", [this] { return Ref<RecordObject>::adopt(clone()); });
    method("CopyFrom", [this](IDispatch* other) { copyFrom(other); });
}

std::size_t RecordObject::indexOf(std::string_view field) const {
    const auto found =
        std::ranges::find_if(class_.fields, [&](const auto& each) { return sameName(each.name, field); });
    if (found == class_.fields.end())
        throw AutomationError(
            errors::NoSuchMember, class_.name + " has no property '" + std::string(field) + "'");
    return static_cast<std::size_t>(found - class_.fields.begin());
}

const Variant& RecordObject::value(std::string_view field) const {
    return values_[indexOf(field)];
}

void RecordObject::set(std::string_view field, const VARIANT& value) {
    assign(indexOf(field), value);
}

void RecordObject::assign(std::size_t index, const VARIANT& value) {
    Variant next = converted(value, class_.fields[index].initial.vt);
    if (sameValue(next, values_[index]))
        return;
    values_[index] = std::move(next);
    if (hasChanged_ && !sameName(class_.fields[index].name, "Changed"))
        values_[indexOf("Changed")] = Variant(true);
}

RecordObject* RecordObject::clone() const {
    auto* copy = new RecordObject(class_);
    copy->takeValues(*this);
    return copy;
}

JobObject::JobObject() : RecordObject(records::job()) {
    property("JobFullName", [this] { return Variant(std::string_view(fullName())); });
}

JobObject* JobObject::clone() const {
    auto* copy = new JobObject;
    copy->takeValues(*this);
    return copy;
}

void RecordObject::copyFrom(IDispatch* other) {
    const LateBound source(other);
    // All values are read before the first is replaced: a value that cannot be read or does not fit leaves
    // the record as it was.
    std::vector<Variant> taken;
    for (const auto& field : class_.fields)
        taken.push_back(converted(source.get(field.name), field.initial.vt));
    for (std::size_t i = 0; i < taken.size(); ++i)
        assign(i, taken[i]);
}

} // namespace kestal
