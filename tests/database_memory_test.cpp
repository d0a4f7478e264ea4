#include "hostif/error.h"
#include "platform/database/memory/database_memory.h"
#include "support/error_of.h"
#include "support/file_folder.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <thread>

#include <fcntl.h>
#include <sqlite3.h>

namespace genutil {
namespace {

using fake::errorOf;

namespace fs = std::filesystem;

const fs::path samples = fs::path(GENUTIL_SAMPLES) / "jobs";
constexpr std::int64_t hour = 3'600'000'000'000;

// With its type; or the error.
std::string shownField(Recordset& records, const char* name) {
    try {
        const Value value = records.field(name);
        return std::to_string(value.storage().index()) + ":" + value.toTextOrEmpty();
    } catch (const Error& error) {
        return std::to_string(error.number()) + error.description();
    }
}

// A folder of jobs and of what is kept of them. Each memory() is one of a new process, an hour after the
// files were made.
class KeptJobs : public testing::Test {
protected:
    std::unique_ptr<DatabaseMemory> memory() {
        return makeDatabaseMemory([this] { return file_; },
            [this](const std::string& path) {
                ++opened_;
                return openToReadDatabase(path);
            },
            [this] { return now() + later_; });
    }
    // What a list asks of a job, as one text.
    static std::string summary(DatabaseEngine& engine, const std::string& path) {
        const auto database = engine.OpenDatabase(path, false, true);
        std::string text;
        for (std::int16_t i = 0; i < database->tableCount(); ++i)
            text += database->tableName(i) + " ";
        if (database->tableCount() > 0)
            text += std::to_string(database->tableRecordCount(0));
        const auto details = database->OpenRecordset("JobDetails");
        text += " of " + std::to_string(details->RecordCount()) + (details->BOF() ? " BOF" : "") +
                (details->EOF_() ? " EOF" : "");
        if (!details->EOF_())
            for (const char* field :
                {"Description", "Date", "EarthRadius", "ApplyGeoid", "NValue", "Zone", "NoSuchField"})
                text += "\n" + shownField(*details, field);
        return text;
    }
    std::string read(const std::string& path) {
        const auto fresh = memory();
        const std::string text = summary(*fresh, path);
        fresh->keep();
        return text;
    }
    static void run(const std::string& path, const std::string& sql) {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
        sqlite3_close(database);
    }
    std::string copyOf(const std::string& sample) {
        fs::copy_file(samples / sample, folder_ / sample);
        return folder_ / sample;
    }

    fake::FileFolder folder_;
    std::string file_ = folder_ / "kept";
    std::int64_t later_ = hour;
    int opened_ = 0;
};

TEST_F(KeptJobs, GiveTheSameAnswersAsTheirFiles) {
    const auto engine = makeDatabaseEngine();
    int jobs = 0;
    for (const auto& entry : fs::directory_iterator(samples)) {
        const std::string name = entry.path().filename();
        if (name.starts_with("bad_") || name.starts_with("empty_") || name.starts_with("NoDetails") ||
            name == "README.md")
            continue;
        const std::string path = copyOf(name);
        const std::string asItIs = summary(*engine, path);
        EXPECT_EQ(read(path), asItIs) << name;
        opened_ = 0;
        EXPECT_EQ(read(path), asItIs) << name;
        EXPECT_EQ(opened_, name == "Memo100k.mdb" ? 1 : 0) << name << ": long texts are not kept";
        ++jobs;
    }
    EXPECT_GT(jobs, 25);
    const auto listed = memory(); // all of them in one go, in no order
    opened_ = 0;
    for (const auto& entry : fs::directory_iterator(folder_.path))
        if (entry.path() != file_ && entry.is_regular_file())
            summary(*listed, entry.path());
    EXPECT_EQ(opened_, 1);
}

TEST_F(KeptJobs, AreAskedThemselvesForWhatIsNotKept) {
    const std::string path = copyOf("Harrow Creek.gdb");
    read(path);
    const auto engine = makeDatabaseEngine()->OpenDatabase(path, false, true);
    const auto kept = memory()->OpenDatabase(path, false, true);
    EXPECT_EQ(kept->tableRecordCount(1), engine->tableRecordCount(1));
    EXPECT_EQ(errorOf([&] { kept->OpenRecordset("None"); }), errorOf([&] { engine->OpenRecordset("None"); }));
    const auto details = kept->OpenRecordset("jobDETAILS");
    EXPECT_EQ(shownField(*details, "Surveyor"), shownField(*engine->OpenRecordset("JobDetails"), "Surveyor"));
    details->MoveNext();
    EXPECT_TRUE(details->EOF_());
    EXPECT_EQ(memory()->OpenDatabase(path, false, false)->OpenRecordset("JobDetails")->RecordCount(), 1)
        << "to write";
}

TEST_F(KeptJobs, AreNeverStale) {
    const std::string path = folder_ / "job.mdb";
    const auto describe = [&](const std::string& text) {
        run(path, "UPDATE JobDetails SET Description = '" + text + "'");
    };
    run(path,
        "CREATE TABLE JobDetails (Description, Date); INSERT INTO JobDetails VALUES ('1', '2026-11-17')");
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"2", [&] { describe("2"); }},
        {"3", // of the same size and time
            [&] {
                const struct stat before = folder_.status("job.mdb");
                describe("3");
                const timespec times[] = {before.st_atim, before.st_mtim};
                ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
            }},
        {"4", // another file of that name, size and time
            [&] {
                fs::copy_file(path, folder_ / "other");
                run(folder_ / "other", "UPDATE JobDetails SET Description = '4'");
                fs::last_write_time(folder_ / "other", fs::last_write_time(path));
                fs::rename(folder_ / "other", path);
            }},
        {"5",
            [&] {
                run(path, "PRAGMA journal_mode = WAL");
                describe("5");
            }},
        {"6", // in the log alone, which a program holds open
            [&] {
                read(path);
                sqlite3* writer = nullptr;
                sqlite3_open(path.c_str(), &writer);
                sqlite3_exec(writer, "UPDATE JobDetails SET Description = '6'", nullptr, nullptr, nullptr);
                EXPECT_NE(read(path).find(":6"), std::string::npos);
                sqlite3_close(writer);
            }},
    };
    for (const auto& [expected, change] : changes) {
        read(path);
        change();
        for (const char* time : {"first", "second"})
            EXPECT_NE(read(path).find(std::string(":") + expected), std::string::npos) << time;
    }
    opened_ = 0;
    read(path);
    EXPECT_EQ(opened_, 0);
}

TEST_F(KeptJobs, ThatWereWrittenAMomentAgoAreReadAgain) {
    const std::string path = copyOf("Harrow Creek.gdb");
    later_ = 0;
    read(path);
    read(path);
    EXPECT_EQ(opened_, 2) << "a change within the clock's grain would not show";
    later_ = hour;
    read(path);
    read(path);
    EXPECT_EQ(opened_, 3);
}

TEST_F(KeptJobs, AreReadFromTheirFilesWhereNothingCanBeKept) {
    const std::string path = copyOf("Harrow Creek.gdb");
    const std::string asItIs = read(path);
    const std::string whole = folder_.contents("kept");
    const auto flipped = [&](std::size_t at) {
        std::string bytes = whole;
        bytes.at(at) ^= 0x10;
        return bytes;
    };
    const std::pair<const char*, std::function<void()>> faults[] = {
        {"no database", [&] { folder_.make("kept", std::string(5000, 'x')); }},
        {"cut off", [&] { folder_.make("kept", whole.substr(0, whole.size() / 2)); }},
        {"empty", [&] { folder_.make("kept", ""); }},
        {"damaged in its tree", [&] { folder_.make("kept", flipped(16384 + 3)); }},
        {"damaged in a text", [&] { folder_.make("kept", flipped(whole.find("Harrow") + 2)); }},
        {"another program's", [&] { run(file_, "PRAGMA application_id = 1"); }},
        {"of another format", [&] { run(file_, "PRAGMA user_version = 99"); }},
        {"without its table", [&] { run(file_, "DROP TABLE seen"); }},
    };
    for (const auto& [name, spoil] : faults) {
        folder_.make("kept", whole);
        spoil();
        EXPECT_EQ(read(path), asItIs) << name;
        read(path);
        opened_ = 0;
        EXPECT_EQ(read(path), asItIs) << name;
        EXPECT_EQ(opened_, 0) << name << ": thrown away and made anew";
    }
    for (const std::string& nowhere : {folder_ / "none/kept", folder_.path.string()}) {
        file_ = nowhere;
        EXPECT_EQ(read(path), asItIs) << nowhere;
    }
    const auto homeless = makeDatabaseMemory([]() -> std::string { throw Error(errors::PathAccess); });
    EXPECT_EQ(summary(*homeless, path), asItIs);
    homeless->forget();
}

TEST_F(KeptJobs, AreForgottenWhenThatIsAsked) {
    const std::string path = copyOf("Harrow Creek.gdb");
    read(path);
    memory()->forget();
    EXPECT_FALSE(fs::exists(file_));
    read(path);
    EXPECT_EQ(opened_, 2);
}

TEST_F(KeptJobs, OfSeveralProgramsAtOnce) {
    std::vector<std::string> paths;
    for (int i = 0; i < 200; ++i) {
        paths.push_back(folder_ / ("job" + std::to_string(1000 + i) + ".gdb"));
        fs::copy_file(samples / "Harrow Creek.gdb", paths.back());
    }
    std::map<std::string, std::string> asTheyAre;
    for (const std::string& path : paths)
        asTheyAre[path] = summary(*makeDatabaseEngine(), path);
    std::vector<std::thread> programs;
    for (int program = 0; program < 4; ++program)
        programs.emplace_back([&] {
            for (int time = 0; time < 5; ++time) {
                const auto own = makeDatabaseMemory(
                    [this] { return file_; }, openToReadDatabase, [] { return now() + hour; });
                for (const std::string& path : paths)
                    EXPECT_EQ(summary(*own, path), asTheyAre.at(path));
            }
        });
    for (std::thread& program : programs)
        program.join();
    const auto last = memory();
    for (const std::string& path : paths)
        summary(*last, path);
    EXPECT_EQ(opened_, 0);
}

} // namespace
} // namespace genutil
