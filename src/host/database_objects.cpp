#include "host/database_objects.h"

#include "host/late_bound.h"
#include "hostif/error.h"

#include <limits>

namespace kestal {
namespace {

using genutil::Database;
using genutil::Recordset;

// Runs a call of the engine; its errors cross the automation face as they are.
template<class Body>
auto engine(Body&& body) {
    try {
        return body();
    } catch (const genutil::Error& error) {
        throw AutomationError(error.number(), error.description());
    }
}

// One recordset, held by its object, its collection of fields and each field of it.
class OpenRecordset {
public:
    explicit OpenRecordset(std::shared_ptr<Recordset> recordset) : recordset_(std::move(recordset)) {}
    void close() { recordset_.reset(); }
    template<class Body>
    auto use(Body&& body) {
        if (!recordset_)
            throw AutomationError(errors::ObjectNotSet, "The recordset is closed");
        return engine([&] { return body(*recordset_); });
    }

private:
    std::shared_ptr<Recordset> recordset_;
};
using OpenRecordsetPtr = std::shared_ptr<OpenRecordset>;

class FieldObject : public AutomationObject {
public:
    FieldObject(const OpenRecordsetPtr& open, const std::string& name) : AutomationObject("DAO.Field") {
        property("Name", [name] { return Variant(std::string_view(name)); });
        property(
            "Value", [=] { return toVariant(open->use([&](Recordset& set) { return set.field(name); })); },
            [=](const VARIANT& value) {
                open->use([&](Recordset& set) { set.setField(name, toValue(value)); });
            });
    }
};

class FieldsObject : public AutomationObject {
public:
    explicit FieldsObject(const OpenRecordsetPtr& open) : AutomationObject("DAO.Fields") {
        method("Item", [open](const std::string& name) {
            open->use([&](Recordset& set) { needField(set, name); });
            return Ref<IDispatch>::adopt(new FieldObject(open, name));
        });
    }

private:
    // Only a field that is not there is missed here; a value that cannot be had is when it is asked for.
    static void needField(Recordset& set, const std::string& name) {
        try {
            set.field(name);
        } catch (const genutil::Error& error) {
            if (error.number() == genutil::errors::ItemNotFound)
                throw;
        }
    }
};

class RecordsetObject : public AutomationObject {
public:
    explicit RecordsetObject(std::shared_ptr<Recordset> recordset)
        : AutomationObject("DAO.Recordset"), open_(std::make_shared<OpenRecordset>(std::move(recordset))) {
        property("BOF", [this] { return read(&Recordset::BOF); });
        property("EOF", [this] { return read(&Recordset::EOF_); });
        property("RecordCount", [this] { return read(&Recordset::RecordCount); });
        const std::pair<const char*, void (Recordset::*)()> acts[] = {{"MoveFirst", &Recordset::MoveFirst},
            {"MoveNext", &Recordset::MoveNext}, {"Edit", &Recordset::Edit}, {"AddNew", &Recordset::AddNew},
            {"Update", &Recordset::Update}};
        for (const auto& [name, act] : acts)
            method(name, [this, act = act] { open_->use([&](Recordset& set) { (set.*act)(); }); });
        method("Close", [this] { open_->close(); });
        property("Fields", [this] {
            const auto fields = Ref<IDispatch>::adopt(new FieldsObject(open_));
            return Variant(fields.get());
        });
    }

private:
    template<class T>
    Variant read(T (Recordset::*member)()) {
        return Variant(open_->use([&](Recordset& set) { return (set.*member)(); }));
    }

    OpenRecordsetPtr open_;
};

class TableDefObject : public AutomationObject {
public:
    TableDefObject(const std::shared_ptr<Database>& database, std::int16_t index)
        : AutomationObject("DAO.TableDef") {
        property("Name",
            [=] { return engine([&] { return Variant(std::string_view(database->tableName(index))); }); });
        property("RecordCount",
            [=] { return engine([&] { return Variant(database->tableRecordCount(index)); }); });
    }
};

class TableDefsObject : public AutomationObject {
public:
    explicit TableDefsObject(std::shared_ptr<Database> database)
        : AutomationObject("DAO.TableDefs"), database_(std::move(database)) {
        property("Count", [this] { return engine([&] { return Variant(database_->tableCount()); }); });
        method("Item", [this](const Variant& which) {
            const std::int16_t index = engine([&] { return indexOf(which); });
            return Ref<IDispatch>::adopt(new TableDefObject(database_, index));
        });
    }

private:
    std::int16_t indexOf(const VARIANT& which) {
        if (which.vt == VT_BSTR) {
            const std::string name = textOf(which);
            for (std::int16_t i = 0; i < database_->tableCount(); ++i)
                if (sameName(database_->tableName(i), name))
                    return i;
            throw genutil::Error(genutil::errors::ItemNotFound, "The database has no table '" + name + "'");
        }
        const std::int32_t index = int32Of(which);
        if (index < 0 || index >= database_->tableCount())
            throw genutil::Error(genutil::errors::ItemNotFound, "The database has no table number " +
                                                                    std::to_string(index) + ": it has " +
                                                                    std::to_string(database_->tableCount()));
        return static_cast<std::int16_t>(index);
    }

    std::shared_ptr<Database> database_;
};

class DatabaseObject : public AutomationObject {
public:
    explicit DatabaseObject(std::shared_ptr<Database> database) : AutomationObject("DAO.Database") {
        property("TableDefs", [database] {
            const auto tables = Ref<IDispatch>::adopt(new TableDefsObject(database));
            return Variant(tables.get());
        });
        method("OpenRecordset", [database](const std::string& table) {
            return makeRecordsetObject(engine([&] { return database->OpenRecordset(table); }));
        });
    }
};

} // namespace

Ref<IDispatch> makeDatabaseObject(std::shared_ptr<Database> database) {
    return Ref<IDispatch>::adopt(new DatabaseObject(std::move(database)));
}

Ref<IDispatch> makeRecordsetObject(std::shared_ptr<Recordset> recordset) {
    return Ref<IDispatch>::adopt(new RecordsetObject(std::move(recordset)));
}

Variant fieldOf(IDispatch* recordset, const std::string& name) {
    const Variant field =
        LateBound(recordset).child("Fields").call("Item", {Variant(std::string_view(name))});
    return LateBound(objectOf(field)).get("Value");
}

Variant toVariant(const genutil::Value& value) {
    return std::visit(
        []<class T>(const T& held) {
            if constexpr (std::is_same_v<T, genutil::Null>) {
                Variant null;
                null.vt = VT_NULL;
                return null;
            } else if constexpr (std::is_same_v<T, std::uint8_t>) {
                Variant byte;
                byte.vt = VT_UI1;
                byte.bVal = held;
                return byte;
            } else if constexpr (std::is_same_v<T, float>) {
                return singleVariant(held);
            } else if constexpr (std::is_same_v<T, std::string>) {
                return Variant(std::string_view(held));
            } else {
                return Variant(held);
            }
        },
        value.storage());
}

genutil::Value toValue(const VARIANT& value) {
    const VARIANT plain = dereferenced(value);
    switch (plain.vt) {
    case VT_NULL:
        return genutil::Null();
    case VT_BOOL:
        return plain.boolVal != VARIANT_FALSE;
    case VT_UI1:
        return plain.bVal;
    case VT_I2:
        return plain.iVal;
    case VT_I4:
        return std::int32_t{plain.lVal};
    case VT_R4:
        return plain.fltVal;
    case VT_EMPTY:
    case VT_BSTR:
        return textOf(plain);
    default:
        return numberOf(plain);
    }
}

} // namespace kestal
