#include "hostif/error.h"
#include "platform/database/database_engine.h"
#include "support/error_of.h"
#include "support/file_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>

#include <sqlite3.h>
#include <sys/resource.h>

namespace genutil {
namespace {

using fake::errorOf;

// A job as another program makes it.
class SqliteJobs : public testing::Test {
protected:
    SqliteJobs() {
        run("CREATE TABLE JobDetails (Description TEXT, Zone INTEGER, NValue REAL, ApplyGeoid BOOLEAN, \"Odd "
            "\"\"name\" "
            "TEXT UNIQUE, Picture BLOB)");
        run("INSERT INTO JobDetails VALUES ('Łódź 測量', 56, 12.345678901234567, 1, '', x'00')");
        run("INSERT INTO JobDetails VALUES (NULL, 5000000000, NULL, 0, 'b', NULL)");
        run("CREATE TABLE AlphaIds (PointNo INTEGER PRIMARY KEY, AlphaId TEXT)");
        run("CREATE VIEW Summary AS SELECT * FROM AlphaIds");
    }
    void run(const std::string& sql) const {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(path_.c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
        sqlite3_close(database);
    }
    std::shared_ptr<Database> open(bool readOnly) const {
        return makeDatabaseEngine()->OpenDatabase(path_, false, readOnly);
    }

    fake::FileFolder folder_;
    std::string path_ = folder_ / "new job.mdb";
};

TEST_F(SqliteJobs, GiveTheirTablesAndValues) {
    const auto database = open(true);
    ASSERT_EQ(database->tableCount(), 2);
    EXPECT_EQ(database->tableName(0), "JobDetails");
    EXPECT_EQ(database->tableRecordCount(0), 2);
    const auto details = database->OpenRecordset("jobdetails");
    const std::pair<const char*, Value> first[] = {{"description", "Łódź 測量"}, {"Zone", std::int32_t(56)},
        {"NValue", 12.345678901234567}, {"ApplyGeoid", true}, {"Odd \"name", ""}};
    for (const auto& [field, value] : first)
        EXPECT_EQ(details->field(field), value) << field;
    details->MoveNext();
    EXPECT_EQ(details->field("Description"), Value());
    EXPECT_EQ(details->field("Zone"), Value(5e9));
    details->MoveNext();
    EXPECT_TRUE(details->EOF_());
}

TEST_F(SqliteJobs, OfTablesWithoutRowNumbersOrWithFieldsOfThatNameAreRead) {
    run("CREATE TABLE Keyed (Name TEXT PRIMARY KEY, Zone) WITHOUT ROWID");
    run("INSERT INTO Keyed VALUES ('b', 2), ('a', 1)");
    run("CREATE TABLE Named (rowid TEXT, _ROWID_ TEXT, Zone)");
    run("INSERT INTO Named VALUES ('x', 'y', 1), ('x', 'z', '2')");
    run("CREATE TABLE Computed (Zone, Twice AS (Zone * 2), Kept AS (Zone + 1) STORED)");
    run("INSERT INTO Computed VALUES (7)");
    const auto database = open(false);
    const auto keyed = database->OpenRecordset("Keyed");
    EXPECT_EQ(keyed->RecordCount(), 2);
    EXPECT_EQ(keyed->field("Name"), Value("a"));
    keyed->MoveNext();
    EXPECT_EQ(keyed->field("Zone"), Value(std::int32_t{2}));
    EXPECT_EQ(errorOf([&] { keyed->Edit(); }), errors::ReadOnlyDatabase);
    const auto named = database->OpenRecordset("Named");
    named->MoveNext();
    EXPECT_EQ(named->field("_rowid_"), Value("z"));
    named->Edit();
    named->setField("Zone", Value(std::int32_t{3}));
    named->Update();
    named->MoveFirst();
    EXPECT_EQ(named->field("Zone"), Value(std::int32_t{1})) << "the other record";
    const auto computed = database->OpenRecordset("Computed");
    EXPECT_EQ(computed->field("Twice"), Value(std::int32_t{14}));
    EXPECT_EQ(computed->field("Kept"), Value(std::int32_t{8}));
}

// Small files that would take minutes and gigabytes.
TEST_F(SqliteJobs, ThatComputeWithoutEndOrHoldMoreThanIsAskedForCostLittle) {
    const auto peak = [] {
        struct rusage used {};
        ::getrusage(RUSAGE_SELF, &used);
        return used.ru_maxrss / 1024; // megabytes
    };
    run("CREATE TABLE Heavy (Zone, Picture BLOB, Essay);"
        "INSERT INTO Heavy VALUES (5, zeroblob(100000000), hex(zeroblob(5000000)));"
        "ALTER TABLE Heavy ADD Big AS (hex(zeroblob(900000000)));"
        "ALTER TABLE Heavy ADD Long AS (length(replace(hex(zeroblob(7000000)), '0', 'abcdefgh')))");
    const auto before = peak();
    const auto start = std::chrono::steady_clock::now();
    const auto heavy = open(true)->OpenRecordset("Heavy");
    EXPECT_EQ(heavy->field("Zone"), Value(std::int32_t{5})) << "what is not asked for is not read";
    for (const char* field : {"Big", "Long", "Essay"})
        EXPECT_EQ(errorOf([&] { heavy->field(field); }), errors::UnrecognisedDatabase) << field;
    EXPECT_EQ(errorOf([&] { heavy->field("Picture"); }), errors::TypeMismatch);
    EXPECT_LT(peak() - before, 64);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)); // without this, minutes
}

TEST_F(SqliteJobs, KeepWhatIsEditedAndAdded) {
    {
        const auto details = open(false)->OpenRecordset("JobDetails");
        details->Edit();
        details->setField("Description", "New text");
        details->setField("zone", Null());
        EXPECT_EQ(details->field("Description"), Value("New text"));
        details->Update();
        details->Edit();
        details->setField("NValue", 1.0);
        details->MoveNext(); // gives the change up
        EXPECT_EQ(errorOf([&] { details->Update(); }), errors::InvalidCall);
        details->AddNew();
        details->setField("Odd \"name", "c");
        details->Update();
        EXPECT_EQ(details->RecordCount(), 3);
    }
    const auto details = open(true)->OpenRecordset("JobDetails");
    EXPECT_EQ(details->RecordCount(), 3);
    EXPECT_EQ(details->field("Description"), Value("New text"));
    EXPECT_EQ(details->field("Zone"), Value());
    EXPECT_EQ(details->field("NValue"), Value(12.345678901234567));
    details->MoveNext();
    details->MoveNext();
    EXPECT_EQ(details->field("Odd \"name"), Value("c"));
}

TEST_F(SqliteJobs, ThatAnotherProgramHasChangedAreNotWrittenOverUnseen) {
    const auto details = open(false)->OpenRecordset("JobDetails");
    const auto save = [&](const char* field, const Value& value) {
        std::string reason;
        try {
            details->Edit();
            details->setField(field, value);
            details->Update();
        } catch (const Error& error) {
            reason = std::to_string(error.number()) + " " + error.description();
        }
        return reason;
    };
    EXPECT_EQ(details->field("Zone"), Value(std::int32_t{56}));
    run("UPDATE JobDetails SET Zone = 55, NValue = 1 WHERE Zone = 56");
    EXPECT_EQ(save("NValue", 2.5), "") << "was not looked at";
    const std::string changed = save("Zone", std::int32_t{57});
    EXPECT_TRUE(changed.starts_with("3197 The field Zone of record 1 ")) << changed;
    EXPECT_TRUE(changed.find("was '56' when") != changed.npos && changed.find("made it '55'") != changed.npos)
        << changed;
    EXPECT_EQ(save("Zone", std::int32_t{57}), "") << "the user has been told";
    EXPECT_EQ(save("Zone", std::int32_t{58}), "") << "nobody else has changed it";
    EXPECT_EQ(details->field("Zone"), Value(std::int32_t{58}));
    run("UPDATE JobDetails SET Zone = 59 WHERE Zone = 58");
    EXPECT_EQ(save("Zone", std::int32_t{59}), "") << "the same value";

    run("DELETE FROM JobDetails WHERE Zone = 59");
    const std::string deleted = save("Zone", std::int32_t{60});
    EXPECT_TRUE(deleted.starts_with("3167 record 1 ")) << deleted;
    EXPECT_EQ(details->RecordCount(), 1);
    details->MoveFirst();
    EXPECT_EQ(details->field("Zone"), Value(5e9)) << "the next one";

    const auto first = open(false)->OpenRecordset("AlphaIds"),
               second = open(false)->OpenRecordset("AlphaIds");
    const auto add = [](Recordset& records) {
        records.AddNew();
        records.setField("AlphaId", "A");
        return errorOf([&] { records.Update(); });
    };
    EXPECT_EQ(add(*first), 0);
    EXPECT_EQ(add(*second), errors::RecordChanged);
    EXPECT_EQ(second->RecordCount(), 1) << "seen now";
    EXPECT_EQ(add(*second), 0);
}

TEST_F(SqliteJobs, RefuseWithTheErrorThatFits) {
    const auto database = open(false);
    const auto details = database->OpenRecordset("JobDetails");
    const auto readOnly = open(true)->OpenRecordset("JobDetails");
    const auto none = database->OpenRecordset("AlphaIds");
    struct Case {
        const char* what;
        int expected;
        std::function<void()> act;
    };
    const Case cases[] = {
        {"no table", errors::TableNotFound, [&] { database->OpenRecordset("Summary"); }},
        {"no field", errors::ItemNotFound, [&] { details->field("rowid"); }},
        {"no record", errors::NoCurrentRecord, [&] { none->Edit(); }},
        {"a picture", errors::TypeMismatch, [&] { details->field("Picture"); }},
        {"set before edit", errors::InvalidCall, [&] { details->setField("Zone", std::int32_t(1)); }},
        {"edit what is read only", errors::ReadOnlyDatabase, [&] { readOnly->Edit(); }},
        {"set what is read only", errors::ReadOnlyDatabase, [&] { readOnly->setField("Zone", Null()); }},
        {"a value twice", errors::InvalidCall,
            [&] {
                details->AddNew();
                details->setField("Odd \"name", "b");
                details->Update();
            }},
    };
    for (const Case& each : cases)
        EXPECT_EQ(errorOf(each.act), each.expected) << each.what;
}

TEST_F(SqliteJobs, HeldByAnotherProgramAreLocked) {
    const auto holder = makeDatabaseEngine()->OpenDatabase(path_, true, false);
    EXPECT_EQ(errorOf([&] { open(true); }), errors::DatabaseLocked);
}

// What writers keep beside the file shall not appear in a folder that is only looked at.
TEST_F(SqliteJobs, WithALogAreReadWithoutLeavingFiles) {
    run("PRAGMA journal_mode = WAL");
    EXPECT_EQ(open(true)->OpenRecordset("JobDetails")->RecordCount(), 2);
    EXPECT_EQ(folder_.names(), std::set<std::string>{"new job.mdb"});
    sqlite3* writer = nullptr;
    ASSERT_EQ(sqlite3_open(path_.c_str(), &writer), SQLITE_OK);
    sqlite3_exec(writer, "DELETE FROM JobDetails", nullptr, nullptr, nullptr);
    EXPECT_EQ(open(true)->OpenRecordset("JobDetails")->RecordCount(), 0) << "the log counts";
    sqlite3_close(writer);
}

TEST_F(SqliteJobs, LeftInTheMiddleOfAChangeSayWhatToDo) {
    folder_.make("new job.mdb-journal", std::string(1000, '\xD9'));
    EXPECT_EQ(errorOf([&] { open(true); }), errors::DatabaseLocked);
    EXPECT_EQ(open(false)->tableCount(), 2);
}

TEST_F(SqliteJobs, CutOrOverwrittenAreRefused) {
    const auto early = open(true)->OpenRecordset("JobDetails");
    std::filesystem::resize_file(path_, 4096);
    EXPECT_EQ(errorOf([&] { early->field("Zone"); }), errors::UnrecognisedDatabase) << "cut while it is read";
    EXPECT_EQ(errorOf([&] { open(true)->OpenRecordset("JobDetails"); }), errors::UnrecognisedDatabase);
    folder_.make("new job.mdb", "SQLite format 3" + std::string(9000, '\0'));
    EXPECT_EQ(errorOf([&] { open(true); }), errors::UnrecognisedDatabase);
}

} // namespace
} // namespace genutil
