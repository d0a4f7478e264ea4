#include "platform/database/database_engine.h"

#include "platform/database/database_file.h"
#include "platform/database/jet_database.h"
#include "platform/database/sqlite_database.h"

namespace genutil {
namespace {

class Engine : public DatabaseEngine {
public:
    std::shared_ptr<Database> OpenDatabase(const std::string& path, bool exclusive, bool readOnly) override {
        DatabaseFile file(path);
        return isSqlite(file) ? openSqliteDatabase(file, exclusive, readOnly)
                              : openJetDatabase(std::move(file));
    }
};

} // namespace

std::unique_ptr<DatabaseEngine> makeDatabaseEngine() {
    return std::make_unique<Engine>();
}

} // namespace genutil
