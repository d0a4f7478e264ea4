#include "component/host_object.h"

#include "hostif/error.h"

namespace genutil {

using k_genutil::Ref;
using k_genutil::Variant;

Value HostObject::read(std::string_view member) const {
    return client_.valueOf(client_.get(member), member);
}

void HostObject::write(std::string_view member, const Value& value) {
    client_.put(member, toVariant(value));
}

RecordPtr HostObject::child(std::string_view member) const {
    return recordOf(
        client_.objectOf(client_.get(member), member).get(), client_.name() + "." + std::string(member));
}

RecordPtr HostObject::Clone() const {
    const auto copy = client_.objectOf(client_.call("Clone", {}), "Clone");
    if (!copy)
        throw Error(errors::ObjectNotSet, "'Clone' of " + client_.name() + " gives Nothing");
    return recordOf(copy.get(), client_.name());
}

void HostObject::CopyFrom(const Record& other) {
    client_.call("CopyFrom", {Variant(objectOf(&other))});
}

RecordPtr recordOf(IDispatch* object, std::string name) {
    return object ? std::make_shared<HostObject>(Ref<IDispatch>::share(object), std::move(name)) : nullptr;
}

IDispatch* objectOf(const Record* record) {
    if (!record)
        return nullptr;
    if (const auto* host = dynamic_cast<const HostObject*>(record))
        return host->object();
    throw Error(errors::TypeMismatch, "The record is not an object of the host");
}

void assignObject(IDispatch** reference, IDispatch* object) {
    if (object)
        object->AddRef();
    if (IDispatch* const earlier = std::exchange(*reference, object))
        earlier->Release();
}

} // namespace genutil
