#include "component/host_database.h"

#include "component/dispatch_client.h"
#include "hostif/error.h"

namespace genutil {
namespace {

using k_genutil::Ref;
using k_genutil::Variant;

// An object that a member hands out; `what` names it in error texts.
DispatchClient objectFrom(const DispatchClient& owner, const Variant& result, std::string_view member) {
    return DispatchClient(owner.objectOf(result, member), owner.name() + "." + std::string(member));
}

DispatchClient child(const DispatchClient& owner, std::string_view member) {
    return objectFrom(owner, owner.get(member), member);
}

DispatchClient item(const DispatchClient& collection, Variant key) {
    return objectFrom(collection, collection.call("Item", {std::move(key)}), "Item");
}

Value valueIn(const DispatchClient& object, std::string_view member) {
    return object.valueOf(object.get(member), member);
}

class HostRecordset final : public Recordset {
public:
    explicit HostRecordset(DispatchClient recordset)
        : recordset_(std::move(recordset)), fields_(child(recordset_, "Fields")) {}

    std::int32_t RecordCount() override { return valueIn(recordset_, "RecordCount").toInt32(); }
    bool BOF() override { return valueIn(recordset_, "BOF").toBool(); }
    bool EOF_() override { return valueIn(recordset_, "EOF").toBool(); }
    void MoveFirst() override { recordset_.call("MoveFirst", {}); }
    void MoveNext() override { recordset_.call("MoveNext", {}); }
    void Edit() override { recordset_.call("Edit", {}); }
    void AddNew() override { recordset_.call("AddNew", {}); }
    void Update() override { recordset_.call("Update", {}); }
    Value field(std::string_view name) override { return valueIn(item(fields_, Variant(name)), "Value"); }
    void setField(std::string_view name, const Value& value) override {
        item(fields_, Variant(name)).put("Value", toVariant(value));
    }

private:
    DispatchClient recordset_;
    DispatchClient fields_;
};

class HostDatabase final : public Database {
public:
    explicit HostDatabase(DispatchClient database)
        : database_(std::move(database)), tables_(child(database_, "TableDefs")) {}

    std::int16_t tableCount() override { return valueIn(tables_, "Count").toInt16(); }
    std::string tableName(std::int16_t index) override {
        return valueIn(item(tables_, Variant(index)), "Name").toText();
    }
    std::int32_t tableRecordCount(std::int16_t index) override {
        return valueIn(item(tables_, Variant(index)), "RecordCount").toInt32();
    }
    std::shared_ptr<Recordset> OpenRecordset(const std::string& table) override {
        return std::make_shared<HostRecordset>(objectFrom(
            database_, database_.call("OpenRecordset", {Variant(std::string_view(table))}), "OpenRecordset"));
    }

private:
    DispatchClient database_;
    DispatchClient tables_;
};

template<class Adapter>
std::shared_ptr<Adapter> adapt(IDispatch* object, const char* name) {
    return object ? std::make_shared<Adapter>(DispatchClient(Ref<IDispatch>::share(object), name)) : nullptr;
}

} // namespace

std::shared_ptr<Database> databaseOf(IDispatch* database) {
    return adapt<HostDatabase>(database, "jobDB");
}

std::shared_ptr<Recordset> recordsetOf(IDispatch* recordset, const char* name) {
    return adapt<HostRecordset>(recordset, name);
}

} // namespace genutil
