#pragma once

#include "hostif/database.h"

#include <k_genutil/automation.h>

namespace genutil {

// A job database or a recordset that the host has open, reached by the names of its members: TableDefs,
// Fields and their Item, as the host's database engine names them. Null for null. The host's errors keep
// their numbers.
std::shared_ptr<Database> databaseOf(IDispatch* database);
// `name` stands for the recordset in error texts.
std::shared_ptr<Recordset> recordsetOf(IDispatch* recordset, const char* name);

} // namespace genutil
