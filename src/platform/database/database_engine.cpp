#include "platform/database/database_engine.h"

#include "platform/database/database_file.h"
#include "platform/database/jet_database.h"
#include "platform/database/sqlite_database.h"

namespace genutil {
namespace {

OpenedDatabase open(const std::string& path, bool exclusive, bool readOnly) {
    DatabaseFile file(path);
    if (!isSqlite(file))
        return {openJetDatabase(std::move(file))};
    return {openSqliteDatabase(file, exclusive, readOnly), mayHaveLog(file)};
}

class Engine : public DatabaseEngine {
public:
    std::shared_ptr<Database> OpenDatabase(const std::string& path, bool exclusive, bool readOnly) override {
        return open(path, exclusive, readOnly).database;
    }
};

} // namespace

std::unique_ptr<DatabaseEngine> makeDatabaseEngine() {
    return std::make_unique<Engine>();
}

OpenedDatabase openToReadDatabase(const std::string& path) {
    return open(path, false, true);
}

} // namespace genutil
