#pragma once

#include "hostif/database.h"
#include "hostif/error.h"

#include <string>
#include <vector>

namespace genutil::test {

inline const std::vector<std::string>& jobFields() {
    static const std::vector<std::string> names = {"Description", "Surveyor", "Date", "Reference",
        "OutputDecH", "CoordType", "Projection", "Zone", "NValue", "ApplyGeoid", "GridFile", "MinimumX",
        "MaximumY", "CurrentMaxPoint", "CreateVersion", "PointNo", "AlphaId", "X", "Code", "Bearing"};
    return names;
}

// Reads all that a job database has to tell. A damaged one may refuse anything with UnrecognisedDatabase,
// anything that its damage has renamed or retyped with ItemNotFound or TypeMismatch, and a record that cannot
// be found again with RecordDeleted or NoCurrentRecord; other errors pass through.
inline void readAll(DatabaseEngine& engine, const std::string& path) {
    const auto allowingDamage = [](const auto& act) {
        try {
            act();
        } catch (const Error& error) {
            if (error.number() != errors::UnrecognisedDatabase && error.number() != errors::ItemNotFound &&
                error.number() != errors::TypeMismatch && error.number() != errors::NoCurrentRecord &&
                error.number() != errors::RecordDeleted)
                throw;
        }
    };
    allowingDamage([&] {
        const auto database = engine.OpenDatabase(path, false, true);
        for (std::int16_t i = 0; i < database->tableCount(); ++i) {
            allowingDamage([&] { database->tableRecordCount(i); });
            allowingDamage([&] {
                const auto records = database->OpenRecordset(database->tableName(i));
                for (int seen = 0; !records->EOF_() && seen < 200; records->MoveNext(), ++seen)
                    for (const std::string& name : jobFields())
                        allowingDamage([&] { records->field(name); });
            });
        }
    });
}

} // namespace genutil::test
