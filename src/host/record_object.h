#pragma once

#include "host/automation_object.h"

#include <span>

namespace kestal {

/// A record class of the host: its properties with their defaults. The type of a default is the type of the
/// property; an Empty one takes any plain value.
struct RecordClass {
    struct Field {
        const char* name;
        Variant initial;
    };
    std::string name; ///< "k_gencvf.prog"
    std::vector<Field> fields;
};

namespace records {
const RecordClass& prog();
const RecordClass& job();
const RecordClass& jobDetails();
const RecordClass& jobCfg();
const RecordClass& jobGeneral();
const RecordClass& genPrefs();
const RecordClass& lsOptPref(); // made of the options in ls_option_set.h
} // namespace records

/// A record: one property for each field of its class, `Clone`, which returns an independent copy, and
/// `CopyFrom` (any object with these properties). A property that is given another value sets `Changed` where
/// the class has it; `Changed` may also be put.
class RecordObject : public AutomationObject {
public:
    explicit RecordObject(const RecordClass& recordClass);

    const std::vector<RecordClass::Field>& fields() const { return class_.fields; }
    /// NoSuchMember for a name that is not a field.
    const Variant& value(std::string_view field) const;
    void set(std::string_view field, const VARIANT& value);
    std::string text(std::string_view field) const { return textOf(value(field)); }
    bool isChanged() const { return hasChanged_ && truthOf(value("Changed")); }

    /// Born with one reference, which is the caller's.
    virtual RecordObject* clone() const;
    void copyFrom(IDispatch* other);

protected:
    /// For clone: another record of the same class.
    void takeValues(const RecordObject& other) { values_ = other.values_; }

private:
    std::size_t indexOf(std::string_view field) const;
    void assign(std::size_t index, const VARIANT& value);

    const RecordClass& class_;
    std::vector<Variant> values_;
    bool hasChanged_ = false;
};

/// A job: where its file is. `JobFullName` is read-only and always what folder, name and extension say.
class JobObject : public RecordObject {
public:
    JobObject();
    JobObject* clone() const override;
    std::string fullName() const { return text("JobPath") + text("JobName") + text("JobExtension"); }
};

} // namespace kestal
