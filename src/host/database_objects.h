#pragma once

#include "host/automation_object.h"
#include "hostif/database.h"

#include <memory>

namespace kestal {

// A job database as others reach it by member names. What the engine refuses keeps its number and
// description.

/// `TableDefs` is a collection (`Count`; `Item` by index from 0 or by name) of tables with `Name` and
/// `RecordCount`; `OpenRecordset`(table name) gives an object as below.
Ref<IDispatch> makeDatabaseObject(std::shared_ptr<genutil::Database> database);

/// `BOF`, `EOF`, `RecordCount`, `MoveFirst`, `MoveNext`, `Edit`, `AddNew`, `Update`, `Close`; `Fields` is a
/// collection (`Item` by name) of fields with `Name` and a `Value` that can be put between Edit or AddNew and
/// Update. After Close everything but Close fails with ObjectNotSet.
Ref<IDispatch> makeRecordsetObject(std::shared_ptr<genutil::Recordset> recordset);

/// The value of a field in the current record of such a recordset.
Variant fieldOf(IDispatch* recordset, const std::string& name);

/// A database value as an automation value of the same type, and back. Empty becomes the empty text; dates
/// and other numbers become doubles; TypeMismatch for an object.
Variant toVariant(const genutil::Value& value);
genutil::Value toValue(const VARIANT& value);

} // namespace kestal
