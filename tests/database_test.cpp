#include "hostif/error.h"
#include "platform/database/database_engine.h"
#include "platform/database/jet_text.h"
#include "support/another_user.h"
#include "support/error_of.h"
#include "support/file_folder.h"
#include "support/json.h"
#include "support/read_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <numeric>
#include <random>

#include <sys/resource.h>

namespace genutil {
namespace {

using fake::errorOf;

namespace fs = std::filesystem;

const fs::path jobs = fs::path(GENUTIL_SAMPLES) / "jobs";

std::string contentsOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::shared_ptr<Database> open(const std::string& name) {
    return makeDatabaseEngine()->OpenDatabase((jobs / name).string(), false, true);
}

// -1 for a table that is not there.
std::int32_t countOf(Database& database, const std::string& table) {
    for (std::int16_t i = 0; i < database.tableCount(); ++i)
        if (database.tableName(i) == table) {
            EXPECT_EQ(database.OpenRecordset(table)->RecordCount(), database.tableRecordCount(i)) << table;
            return database.tableRecordCount(i);
        }
    return -1;
}

int tablesNamed(Database& database, const std::string& prefix) {
    int count = 0;
    for (std::int16_t i = 0; i < database.tableCount(); ++i)
        count += database.tableName(i).starts_with(prefix);
    return count;
}

TEST(JobDatabases, TellTheirTablesAndHowManyRecordsTheyHave) {
    struct Case {
        const char* file;
        std::int32_t details, alphaIds;
        int traverseSets, leastSquaresSets;
    };
    const Case cases[] = {{"Smith Farm.mdb", 1, 5, 2, 1}, {"HIGHWAY_17.mdb", 1, 120, 7, 3},
        {"Riverbend Geo.gdb", 1, 5, 2, 0}, {"allnulls.mdb", 1, 0, 0, 0}, {"three LINES.mdb", 1, 5, 2, 1},
        {"LongMemo.gdb", 1, 5, 3, 1}, {"EmptyDetails.mdb", 0, 5, 2, 1}, {"NoDetails.mdb", -1, 5, 2, 1},
        {"NoAlpha.MDB", 1, -1, 2, 1}, {"DeletedFirst.mdb", 1, 5, 2, 1}, {"ManySets.mdb", 1, 2500, 60, 40},
        {"empty_V2000.mdb", -1, -1, 0, 0}, {"empty_V2003.mdb", -1, -1, 0, 0},
        {"Jet3 Many.mdb", 1, 300, 12, 8}, {"Jet3 Empty.mdb", 0, 0, 1, 1}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.file);
        const auto database = open(each.file);
        EXPECT_EQ(countOf(*database, "JobDetails"), each.details);
        EXPECT_EQ(countOf(*database, "AlphaIds"), each.alphaIds);
        EXPECT_EQ(tablesNamed(*database, "TravSet_"), each.traverseSets);
        EXPECT_EQ(tablesNamed(*database, "LSSet_"), each.leastSquaresSets);
        EXPECT_EQ(tablesNamed(*database, "MSys"), 0);
    }
}

TEST(JobDatabases, GiveEachValueAsItIsStored) {
    struct Case {
        const char* file;
        const char* field;
        Value value;
    };
    const Case cases[] = {
        {"HIGHWAY_17.mdb", "NValue", 12.345678901234567},
        {"HIGHWAY_17.mdb", "MinimumX", 321456.78901234567},
        {"HIGHWAY_17.mdb", "minimumy", 6251234.5678901234},
        {"HIGHWAY_17.mdb", "CoordType", std::int16_t(1)},
        {"HIGHWAY_17.mdb", "OutputDecH", std::uint8_t(3)},
        {"HIGHWAY_17.mdb", "ApplyGeoid", true},
        {"Smith Farm.mdb", "ApplyGeoid", false},
        {"Smith Farm.mdb", "Description", "Boundary survey"},
        {"Smith Farm.mdb", "GridFile", ""},
        {"Smith Farm.mdb", "MaximumX", 1500.3333333333333},
        {"StarGrid.mdb", "GridFile", "*"},
        {"Riverbend Geo.gdb", "CoordType", std::int16_t(2)},
        {"allnulls.mdb", "GridFile", Null()},
        {"allnulls.mdb", "MinimumX", Null()},
        {"allnulls.mdb", "ApplyGeoid", false},
        {"DeletedFirst.mdb", "Description", "Live row after a deleted one"},
        {"AddedColumn.mdb", "CreateVersion", Null()},
        {"Łódź-Müller.mdb", "Description", "Vermessung Straße Ñandú – Łódź 測量 Ωμέγα"},
        {"Łódź-Müller.mdb", "Surveyor", "Jose\u0301 Müller"},
        {"Łódź-Müller.mdb", "Reference", "R-😀-9"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(open(each.file)->OpenRecordset("jobdetails")->field(each.field), each.value)
            << each.file << ' ' << each.field;
}

TEST(JobDatabases, GiveLongTextsWhole) {
    const std::pair<const char*, std::size_t> cases[] = {
        {"LongMemo.gdb", 500}, {"Memo9000.mdb", 9'000}, {"Memo100k.mdb", 100'000}, {"Jet3 Memo.mdb", 6'000}};
    for (const auto& [file, size] : cases)
        EXPECT_EQ(open(file)->OpenRecordset("JobDetails")->field("Description").toText().size(), size)
            << file;
    // "Paragraph 1; Paragraph 2; ..." to the very end
    const std::string text = open("Memo100k.mdb")->OpenRecordset("JobDetails")->field("Description").toText();
    std::string expected;
    for (int i = 1; expected.size() < text.size(); ++i)
        expected += "Paragraph " + std::to_string(i) + "; ";
    EXPECT_EQ(text, expected.substr(0, text.size()));
}

TEST(JobDatabases, OfFormat3GiveEveryValueOfEveryTable) {
    const std::string text = contentsOf(fs::path(GENUTIL_TEST_DATA) / "jet3_values.json");
    const fake::Json files = fake::JsonReader(text).read();
    int values = 0;
    for (std::size_t file = 0; file < files.names.size(); ++file) {
        const fake::Json& tables = files.items[file]["rows"];
        const auto database = open(files.names[file]);
        EXPECT_EQ(database->tableCount(), static_cast<int>(tables.names.size())) << files.names[file];
        for (std::size_t table = 0; table < tables.names.size(); ++table) {
            SCOPED_TRACE(files.names[file] + ' ' + tables.names[table]);
            const fake::Json& fields = files.items[file]["cols"][tables.names[table]];
            const auto records = database->OpenRecordset(tables.names[table]);
            for (const fake::Json& row : tables.items[table].items) {
                ASSERT_FALSE(records->EOF_());
                for (std::size_t i = 0; i < row.items.size(); ++i, ++values) {
                    const Value& expected = row.items[i].value;
                    const Value found = records->field(fields.items[i].items[0].value.toText());
                    const bool isNumber =
                        std::holds_alternative<double>(expected.storage()) && !found.isNull();
                    EXPECT_EQ(isNumber ? Value(found.toDouble()) : found, expected);
                }
                records->MoveNext();
            }
            EXPECT_TRUE(records->EOF_());
        }
    }
    EXPECT_GT(values, 7'000);
}

TEST(JobDatabases, RefuseWithTheErrorThatFits) {
    const fake::FileFolder folder;
    const auto engine = makeDatabaseEngine();
    const auto opening = [&](const std::string& path) {
        return [&engine, path] { engine->OpenDatabase(path, false, true); };
    };
    const auto database = open("Smith Farm.mdb");
    const auto details = database->OpenRecordset("JobDetails");
    const auto none = open("EmptyDetails.mdb")->OpenRecordset("JobDetails");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", folder / "device.mdb");
    fs::create_symlink("loop.mdb", folder / "loop.mdb");
    fs::create_symlink("gone", folder / "dangling.mdb");
    struct Case {
        const char* what;
        int expected;
        std::function<void()> act;
    };
    const Case cases[] = {
        {"no file", errors::FileNotFound, opening(folder / "no.mdb")},
        {"no folder", errors::PathNotFound, opening(folder / "no/no.mdb")},
        {"a folder", errors::UnrecognisedDatabase, opening(folder.path.string())},
        {"a pipe", errors::UnrecognisedDatabase, opening(folder / "pipe")},
        {"a link to a device", errors::UnrecognisedDatabase, opening(folder / "device.mdb")},
        {"links in a circle", errors::DeviceError, opening(folder / "loop.mdb")},
        {"a link to nothing", errors::FileNotFound, opening(folder / "dangling.mdb")},
        {"no bytes", errors::UnrecognisedDatabase, [] { open("bad_zero.mdb"); }},
        {"a text", errors::UnrecognisedDatabase, [] { open("bad_text.mdb"); }},
        {"half a file", errors::UnrecognisedDatabase, [] { open("bad_truncated.mdb"); }},
        {"random bytes", errors::UnrecognisedDatabase, [] { open("bad_random.mdb"); }},
        {"no table", errors::TableNotFound, [&] { database->OpenRecordset("Jobs"); }},
        {"a system table", errors::TableNotFound, [&] { database->OpenRecordset("MSysObjects"); }},
        {"no table of that number", errors::ItemNotFound,
            [&] { database->tableName(database->tableCount()); }},
        {"no field", errors::ItemNotFound, [&] { details->field("Client"); }},
        {"no record", errors::NoCurrentRecord, [&] { none->field("Description"); }},
        {"no first record", errors::NoCurrentRecord, [&] { none->MoveFirst(); }},
        {"edit", errors::ReadOnlyDatabase, [&] { details->Edit(); }},
        {"add", errors::ReadOnlyDatabase, [&] { details->AddNew(); }},
        {"update", errors::ReadOnlyDatabase, [&] { details->Update(); }},
        {"set", errors::ReadOnlyDatabase, [&] { details->setField("Description", "new"); }},
    };
    for (const Case& each : cases)
        EXPECT_EQ(errorOf(each.act), each.expected) << each.what;
    const std::string closed = folder.make("closed.mdb");
    fs::permissions(closed, fs::perms::none);
    const fake::AnotherUser anotherUser;
    EXPECT_EQ(errorOf(opening(closed)), errors::PermissionDenied);
}

TEST(JobDatabases, MoveFromTheFirstRecordBehindTheLastAndBack) {
    const auto ids = open("Smith Farm.mdb")->OpenRecordset("AlphaIds");
    EXPECT_FALSE(ids->BOF());
    const Value first = ids->field("AlphaId");
    for (int i = 0; i < 5; ++i)
        ids->MoveNext();
    EXPECT_TRUE(ids->EOF_());
    EXPECT_EQ(errorOf([&] { ids->field("AlphaId"); }), errors::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { ids->MoveNext(); }), errors::NoCurrentRecord);
    ids->MoveFirst();
    EXPECT_EQ(ids->field("AlphaId"), first);
    const auto none = open("EmptyDetails.mdb")->OpenRecordset("JobDetails");
    EXPECT_TRUE(none->BOF() && none->EOF_());
}

// A format 3 job of which one page at a time is changed; offsets count from the page's begin.
struct PatchedJob {
    std::string bytes;
    std::size_t page;

    void put(std::size_t offset, std::size_t size, std::size_t number) {
        for (; size-- > 0; number >>= 8)
            bytes[page * 2048 + offset++] = static_cast<char>(number & 0xFF);
    }
    std::size_t number16(std::size_t offset) const { return jet::numberAt(bytes, page * 2048 + offset, 2); }
};

// An update that makes a record longer than its place moves it: a pointer stays in its place, and where the
// record stands now it is marked as deleted.
TEST(JobDatabases, FindRecordsThatAnUpdateHasMoved) {
    const fake::FileFolder folder;
    PatchedJob job{contentsOf(jobs / "Jet3 Plane.mdb"), 0};
    job.page = job.bytes.find("STNB1") / 2048;
    const std::size_t rows = job.number16(8);
    const std::size_t first = job.number16(10);
    const std::size_t moved = job.number16(10 + 2 * (rows - 1)) - (2048 - first);
    job.bytes.replace(
        job.page * 2048 + moved, 2048 - first, job.bytes.substr(job.page * 2048 + first, 2048 - first));
    job.put(8, 2, rows + 1);
    job.put(10 + 2 * rows, 2, moved | 0x8000);
    job.put(10, 2, first | 0x4000);
    job.put(first, 4, job.page << 8 | rows);
    const auto engine = makeDatabaseEngine();
    const auto ids =
        engine->OpenDatabase(folder.make("job.mdb", job.bytes), false, true)->OpenRecordset("AlphaIds");
    EXPECT_EQ(ids->RecordCount(), 5);
    EXPECT_EQ(ids->field("AlphaId"), Value("STNB1"));

    job.put(first, 4, job.page << 8); // to itself
    EXPECT_EQ(errorOf([&] {
        engine->OpenDatabase(folder.make("job.mdb", job.bytes), false, true)->OpenRecordset("AlphaIds");
    }),
        errors::UnrecognisedDatabase);
}

TEST(JobDatabases, RefuseALongTextThatGoesRoundWithoutEnd) {
    const fake::FileFolder folder;
    PatchedJob job{contentsOf(jobs / "Jet3 Memo.mdb"), 0};
    // Every row of long texts becomes a pointer to itself and nothing else.
    for (job.page = 0; job.page < job.bytes.size() / 2048; ++job.page)
        if (job.bytes.compare(job.page * 2048 + 4, 4, "LVAL") == 0) {
            job.put(8, 2, 1);
            job.put(10, 2, 2044);
            job.put(2044, 4, job.page << 8);
        }
    const auto database = makeDatabaseEngine()->OpenDatabase(folder.make("job.mdb", job.bytes), false, true);
    const auto details = database->OpenRecordset("JobDetails");
    EXPECT_TRUE(details->field("Surveyor").isText());
    EXPECT_EQ(errorOf([&] { details->field("Description"); }), errors::UnrecognisedDatabase);
}

TEST(JobTexts, AreReadInEachFormThatTheyAreStoredIn) {
    using namespace std::string_literals;
    const std::tuple<jet::Version, std::string, const char*> cases[] = {
        {jet::Version::Jet3, "\xB1 2\x80", "± 2€"},
        {jet::Version::Jet4, "A\0\x6E\x6A"s, "A\u6A6E"},
        {jet::Version::Jet4, "\xFF\xFE"s + "A\xE9", "Aé"},
        {jet::Version::Jet4, "\xFF\xFE"s + "A\0\x6E\x6A\0B"s,
            "A\u6A6E"
            "B"},
        {jet::Version::Jet4, "\xFF\xFE"s, ""},
        {jet::Version::Jet4, "A\0B"s, "A"},
    };
    for (const auto& [version, stored, text] : cases)
        EXPECT_EQ(jet::decodeText(stored, version), text);
}

TEST(JobDatabases, ThatAreCutWhileTheyAreReadSaySo) {
    const fake::FileFolder folder;
    const std::string path = folder.make("job.mdb", contentsOf(jobs / "Memo100k.mdb"));
    const auto database = makeDatabaseEngine()->OpenDatabase(path, false, true);
    const auto details = database->OpenRecordset("JobDetails");
    fs::resize_file(path, 4096 * 3);
    EXPECT_EQ(errorOf([&] { details->field("Description"); }), errors::UnrecognisedDatabase);
    EXPECT_EQ(errorOf([&] { database->OpenRecordset("AlphaIds"); }), errors::UnrecognisedDatabase);
}

// Most databases are not; those that are have all pages but the first enciphered, each with a key of its own.
std::string encoded(std::string bytes) {
    constexpr std::size_t pageSize = 2048, keyPlace = 0x3E;
    constexpr std::uint32_t key = 0x12345678;
    for (std::size_t page = 0; page < bytes.size() / pageSize; ++page) {
        const std::uint32_t pageKey = page == 0 ? key : key ^ static_cast<std::uint32_t>(page);
        const auto keyByte = [pageKey](std::size_t i) { return pageKey >> i % 4 * 8 & 0xFF; };
        const auto change = [&](std::size_t i, std::size_t with) {
            bytes[page * pageSize + i] =
                static_cast<char>(bytes[page * pageSize + i] ^ static_cast<char>(with));
        };
        if (page == 0) {
            for (std::size_t i = 0; i < 4; ++i)
                change(keyPlace + i, keyByte(i));
            continue;
        }
        std::array<std::size_t, 256> state;
        std::iota(state.begin(), state.end(), 0);
        for (std::size_t i = 0, j = 0; i < 256; ++i) {
            j = (j + state[i] + keyByte(i)) & 0xFF;
            std::swap(state[i], state[j]);
        }
        for (std::size_t n = 0, i = 0, j = 0; n < pageSize; ++n) {
            i = (i + 1) & 0xFF;
            j = (j + state[i]) & 0xFF;
            std::swap(state[i], state[j]);
            change(n, state[(state[i] + state[j]) & 0xFF]);
        }
    }
    return bytes;
}

TEST(JobDatabases, ThatAreEncodedAreReadAsOthers) {
    const fake::FileFolder folder;
    const std::string path = folder.make("job.mdb", encoded(contentsOf(jobs / "Jet3 Memo.mdb")));
    EXPECT_EQ(makeDatabaseEngine()
                  ->OpenDatabase(path, false, true)
                  ->OpenRecordset("JobDetails")
                  ->field("Description"),
        open("Jet3 Memo.mdb")->OpenRecordset("JobDetails")->field("Description"));
}

// Most of them in the first sixteen bytes of a page or in numbers; every fourth time pages are cut off.
std::string damaged(std::string bytes, std::mt19937& random, bool isCut) {
    const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random() % end); };
    for (std::size_t changes = 1 + below(40); changes > 0; --changes) {
        const std::size_t page = below(bytes.size() / 1024) * 1024;
        const std::size_t place = page + (below(2) ? below(16) : below(1024));
        const char values[] = {0, 1, 2, '\x7F', '\x80', '\xFF', static_cast<char>(random())};
        bytes[place] = values[below(std::size(values))];
    }
    if (isCut)
        bytes.resize(below(bytes.size() / 1024) * 1024);
    return bytes;
}

// K_GENUTIL_DAMAGED_FILES: how many of each job, 12 unless it is set.
TEST(JobDatabases, DamagedInAnyPlaceAreReadOrRefusedSoonAndInLittleMemory) {
    const char* const wanted = std::getenv("K_GENUTIL_DAMAGED_FILES");
    const int rounds = wanted ? std::atoi(wanted) : 12;
    const fake::FileFolder folder;
    const auto engine = makeDatabaseEngine();
    std::mt19937 random(17);
    std::chrono::duration<double> slowest{0};
    const auto peak = [] {
        struct rusage used {};
        ::getrusage(RUSAGE_SELF, &used);
        return used.ru_maxrss / 1024; // megabytes
    };
    const auto peakBefore = peak();
    int cases = 0;
    for (const auto& entry : fs::directory_iterator(jobs)) {
        const std::string whole = contentsOf(entry.path());
        for (int round = 0; round < rounds && whole.size() > 4096; ++round, ++cases) {
            SCOPED_TRACE(entry.path().filename().string() + ", round " + std::to_string(round));
            const std::string path = folder.make("job.mdb", damaged(whole, random, round % 4 == 0));
            const auto start = std::chrono::steady_clock::now();
            EXPECT_NO_THROW(test::readAll(*engine, path));
            slowest =
                std::max<std::chrono::duration<double>>(slowest, std::chrono::steady_clock::now() - start);
        }
    }
    const auto grown = peak() - peakBefore;
    std::printf(
        "%d damaged files, the slowest %.3f s, memory grown by %ld MB\n", cases, slowest.count(), grown);
    EXPECT_LT(slowest.count(), 2);
#ifndef __SANITIZE_ADDRESS__
    EXPECT_LT(grown, 64);
#endif
}

} // namespace
} // namespace genutil
