#pragma once

#include "hostif/error.h"
#include "hostif/value.h"

#include <memory>
#include <string>
#include <string_view>

namespace genutil {

// The typed key of a host object's property.
template<class T>
struct Property {
    using Type = T;
    const char* name;
};

class Record;
using RecordPtr = std::shared_ptr<Record>;

// An object of the host: a record (program, job, job details, configuration, preferences, option set,
// instant-help choice) or anything reached by name, such as the main window and its menu items. Every member
// throws Error: NoSuchMember names a member that the object lacks, TypeMismatch a member that hands over
// something unfit.
class Record {
public:
    virtual ~Record() = default;

    virtual Value read(std::string_view member) const = 0;
    virtual void write(std::string_view member, const Value& value) = 0;
    // An object-valued property, such as a menu item of the main window; null where the host hands Nothing.
    virtual RecordPtr child(std::string_view member) const = 0;
    // An independent copy, made by the host object itself.
    virtual RecordPtr Clone() const = 0;
    // Takes over every property of another object of the same class.
    virtual void CopyFrom(const Record& other) = 0;

    template<class T>
    T get(const Property<T>& property) const {
        const Value value = read(property.name);
        try {
            return value.template to<T>();
        } catch (const Error& error) {
            throw Error(
                error.number(), "Property '" + std::string(property.name) + "': " + error.description());
        }
    }
    template<class T>
    void put(const Property<T>& property, const typename Property<T>::Type& value) {
        write(property.name, Value(value));
    }
};

} // namespace genutil
