#pragma once

#include "component/dispatch_client.h"
#include "hostif/record.h"

namespace genutil {

// An object of the host as a record: its properties, Clone and CopyFrom by name.
class HostObject final : public Record {
public:
    HostObject(k_genutil::Ref<IDispatch> object, std::string name)
        : client_(std::move(object), std::move(name)) {}

    Value read(std::string_view member) const override;
    void write(std::string_view member, const Value& value) override;
    RecordPtr child(std::string_view member) const override;
    RecordPtr Clone() const override;
    void CopyFrom(const Record& other) override;

    IDispatch* object() const { return client_.object(); }

private:
    DispatchClient client_;
};

// The host object as a record; null for null. `name` stands for it in error texts.
RecordPtr recordOf(IDispatch* object, std::string name);

// The host object behind a record; null for null. Throws TypeMismatch for a record that is not the host's.
IDispatch* objectOf(const Record* record);

// Puts another object (null for Nothing) into the caller's reference, which lets go of the earlier one.
void assignObject(IDispatch** reference, IDispatch* object);

} // namespace genutil
