#include "joblist/job_discovery.h"
#include "joblist/job_errors.h"
#include "joblist/job_files.h"
#include "joblist/job_names.h"
#include "support/file_folder.h"
#include "support/job_world.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace genutil;

namespace {

using Texts = std::vector<std::string>;

// A field of the details table: what a job has there, and what its record then holds for that and for Null.
struct Field {
    const char* name;
    Value given, stored, whenNull;
};

std::int16_t operator""_i(unsigned long long value) {
    return std::int16_t(value);
}
std::int32_t operator""_l(unsigned long long value) {
    return std::int32_t(value);
}
std::uint8_t operator""_b(unsigned long long value) {
    return std::uint8_t(value);
}
const std::int16_t noInteger = -1;
const std::int32_t noLong = -1;

const std::vector<Field> allFields{
    {"Description", "Dam", "Dam", ""},
    {"Surveyor", "Ann", "Ann", ""},
    {"Date", "1 May 2026", "1 May 2026", ""},
    {"Reference", 17_i, "17", ""},
    {"OutputDecH", 3_i, 3_b, 0_b},
    {"OutputDecV", 4_i, 4_b, 0_b},
    {"CoordType", 1_i, 1_i, noInteger},
    {"Projection", "UTM", "UTM", ""},
    {"Zone", 55.5, 56_i, 0_i},
    {"NValue", 2.5, 245.0, 0.0},
    {"DatumV", "AHD", "AHD", ""},
    {"EarthRadius", 6371000.5, 6371000.5, noInteger},
    {"ApplyGeoid", true, true, false},
    {"InterpMethod", "L", "Bilinear", ""},
    {"GridFile", "geoid.gsb", "geoid.gsb", ""},
    {"Spheroid", "GRS80", "GRS80", ""},
    {"DatumH", "GDA94", "GDA94", ""},
    {"DeflectionNS", 1.25, 1.25, 0.0},
    {"DeflectionEW", -2.5, -2.5, 0.0},
    {"ApproxLat", 33_i, 33_i, noInteger},
    {"ValidHorizPts", 70000_l, 70000_l, noLong},
    {"CurrentMaxPoint", 70001_l, 70001_l, noLong},
    {"FirstFreePoint", 70002_l, 70002_l, noLong},
    {"FirstPointStored", 5_l, 5_l, noLong},
    {"TransType", "T", "T", ""},
    {"GeoidUpdate", true, true, false},
    {"MinimumX", 1000.4, 1000.4, 0.0},
    {"MinimumY", -32.0, -32.0, 0.0},
    {"MaximumX", 2000.4, 2000.4, 0.0},
    {"MaximumY", -31.0, -31.0, 0.0},
};

fake::FakeRow jobRecord(Value Field::*value = &Field::given) {
    fake::FakeRow record{{"CreateVersion", value == &Field::given ? Value("9.1") : Value()}};
    for (const Field& field : allFields)
        record[field.name] = value == &Field::given ? field.given : Value();
    return record;
}

struct Jobs : ::testing::Test, fake::JobWorld {
    JobTable table{component};
    RecordPtr jobCfg, jobGeneral, jobDetails;
    bool ok = false;

    // The job's row, after reading its records.
    JobRow read(std::vector<fake::FakeTable> tables) {
        databases.files["/j/a.gdb"] = std::move(tables);
        const auto database = databases.OpenDatabase("/j/a.gdb", false, true);
        const auto rset = database->OpenRecordset("JobDetails");
        jobCfg = jobGeneral = jobDetails = nullptr;
        ReadJobDetailsTemp(component, rset, jobCfg, jobGeneral, jobDetails, ok);
        table.addJob();
        table.AssignSingleJob("a", ".gdb", database, rset, jobDetails, jobCfg, jobGeneral, ok);
        return table.jobList.back();
    }
    JobRow read(const fake::FakeRow& record) { return read({{"JobDetails", {record}}}); }
    Value stored(std::size_t field) const {
        return (field < 4 ? jobDetails : field < 20 ? jobCfg : jobGeneral)->read(allFields[field].name);
    }
};

TEST_F(Jobs, EveryFieldReachesItsMemberAndItsColumn) {
    ASSERT_EQ(jobFields().size(), allFields.size());
    const JobRow row = read(jobRecord());
    for (std::size_t i = 0; i < allFields.size(); ++i)
        EXPECT_EQ(stored(i), allFields[i].stored) << allFields[i].name;
    EXPECT_EQ(Texts(row.begin(), row.end()),
        (Texts{"a.gdb", "1 May 2026", "Ann", "17", "Dam", "1", "6371000.5", "UTM", "GDA94", "GRS80", "33",
            "56", "AHD", "245", "1.25", "-2.5", "Bilinear", "geoid.gsb", "3", "4", "70000", "0",
            "1500.4 as #######0", "-31.5 as #######0", "0", "0", "9.1"}));
    const JobRow nulls = read(jobRecord(&Field::whenNull));
    for (std::size_t i = 0; i < allFields.size(); ++i)
        EXPECT_EQ(stored(i), allFields[i].whenNull) << allFields[i].name;
    EXPECT_EQ(Texts(nulls.begin(), nulls.end()),
        (Texts{"a.gdb", "", "", "", "", "-1", "-1", "", "", "", "-1", "0", "", "0", "0", "0", "", "", "0",
            "0", "-1", "0", "0 as #######0", "0 as #######0", "0", "0", ""}));
}

TEST_F(Jobs, TheColumnsHaveTheirTitlesAlignmentsAndLimits) {
    EXPECT_EQ(jobColumnsFormat(),
        "<Job|^Create Date|<Surveyor|<Reference|<Description|^Coord System|>E.Radius|<Projection|<H.Datum|"
        "<Spheroid|^Approx.Lat|^Zone|<V.Datum|>G.Sep(N)|>V.Def-NS|>V.Def-EW|<Interp.Method|<Geoid File|"
        "^Dec. H|^Dec. V|^Points|^Alpha IDs|>Cent. E/Lat|>Cent. N/Long|^Trav Sets|^LS Sets|<Version");
    const int limits[] = {0, 0, 0, 0, 0, 0, 8, 0, 10, 10, 4, 4, 10, 6, 6, 6, 0, 0, 2, 2, 8};
    for (std::size_t i = 0; i < jobColumnCount; ++i)
        EXPECT_EQ(jobColumns()[i].limit, i < std::size(limits) ? limits[i] : 0) << jobColumns()[i].title;
}

TEST_F(Jobs, AMissingFieldLeavesItsMemberAloneAndAllOthersAreRead) {
    for (std::size_t missing = 0; missing < allFields.size(); ++missing) {
        fake::FakeRow record = jobRecord();
        record.erase(allFields[missing].name);
        record.erase("CreateVersion");
        EXPECT_EQ(read(record)[26], "");
        for (std::size_t i = 0; i < allFields.size(); ++i) {
            if (i == missing)
                EXPECT_NE(stored(i), allFields[i].stored) << allFields[i].name;
            else
                EXPECT_EQ(stored(i), allFields[i].stored) << allFields[i].name;
        }
    }
    EXPECT_TRUE(host.log.empty()) << "nothing is reported";
}

TEST_F(Jobs, StoredTextsBecomeWhatTodaysListShows) {
    const struct {
        const char *field, *given, *member;
        std::size_t column;
        const char* shown;
    } cases[] = {{"InterpMethod", "S", "Spline", 17, "Spline"},
        {"InterpMethod", "C", "Bicubic", 17, "Bicubic"}, {"InterpMethod", "l", "l", 17, "l"},
        {"InterpMethod", "x", "", 17, ""}, {"InterpMethod", "X", "X", 17, "X"}, {"GridFile", "*", "", 18, ""},
        {"GridFile", "**", "**", 18, "**"},
        {"Description", "one\r\ntwo\r\nthree", "one two three", 5, "one two three"},
        {"Description", "\r\n\r\n", "  ", 5, "  "}, {"Description", "a\nb\rc", "a\nb\rc", 5, "a\nb\rc"}};
    for (const auto& c : cases) {
        fake::FakeRow record = jobRecord();
        record[c.field] = c.given;
        EXPECT_EQ(read(record)[c.column - 1], c.shown) << c.given;
        EXPECT_EQ((c.column == 5 ? jobDetails : jobCfg)->read(c.field), Value(c.member)) << c.given;
    }
}

TEST_F(Jobs, TheCentreOfAGeographicJobIsTwoAngles) {
    fake::FakeRow record = jobRecord();
    record["CoordType"] = 2_i;
    const JobRow row = read(record);
    EXPECT_EQ(row[22], "-31.5 LATITUDE");
    EXPECT_EQ(row[23], "1500.4 LONGITUDE");
}

TEST_F(Jobs, AValueThatDoesNotFitIsReportedWithItsField) {
    const struct {
        const char* field;
        Value value;
        int number;
    } cases[] = {{"OutputDecH", 256_i, errors::Overflow}, {"Zone", 40000_l, errors::Overflow},
        {"NValue", "deep", errors::TypeMismatch}, {"ValidHorizPts", 3e9, errors::Overflow}};
    for (const auto& c : cases) {
        host.log.clear();
        fake::FakeRow record = jobRecord();
        record[c.field] = c.value;
        try {
            read(record);
            FAIL() << c.field;
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), c.number) << c.field;
            EXPECT_EQ(error.source(), "(Form) Joblist::Sub ReadJobDetailsTemp");
        }
        ASSERT_EQ(host.log.size(), 1u);
        EXPECT_EQ(host.log[0].find(std::string("ReportProcError (Form) Joblist::Sub ReadJobDetailsTemp: "
                                               "Field '") +
                                   c.field + "': "),
            0u)
            << host.log[0];
    }
}

TEST_F(Jobs, AnIncompleteDatabaseShowsItsNameAndItsCounts) {
    const JobRow row = read({{"MS1", {}}, {"JobDetails", {}}, {"JobAlphaIds", {{}, {}}}});
    JobRow expected;
    expected[0] = "a.gdb";
    expected[4] = "(Incomplete database)";
    expected[21] = "2";
    expected[24] = "1";
    expected[25] = "0";
    EXPECT_EQ(row, expected);
    EXPECT_FALSE(ok);
    EXPECT_FALSE(jobCfg || jobGeneral);
}

TEST_F(Jobs, OnlyARecordsetThatHasItsRecordIsRead) {
    struct Odd : fake::FakeRecordset {
        std::int32_t count = 0;
        bool before = false, after = false;
        using FakeRecordset::FakeRecordset;
        std::int32_t RecordCount() override { return count; }
        bool BOF() override { return before; }
        bool EOF_() override { return after; }
    };
    std::vector<fake::FakeRow> records{jobRecord()};
    const struct {
        std::int32_t count;
        bool before, after, ok;
    } cases[] = {{1, false, false, true}, {1, true, false, true}, {0, false, false, false},
        {-1, false, false, false}, {1, true, true, false}};
    for (const auto& c : cases) {
        const auto rset = std::make_shared<Odd>(databases, records);
        rset->count = c.count;
        rset->before = c.before;
        rset->after = c.after;
        ReadJobDetailsTemp(component, rset, jobCfg, jobGeneral, jobDetails, ok);
        EXPECT_EQ(ok, c.ok) << c.count << c.before << c.after;
    }
}

TEST_F(Jobs, TablesAreCountedByTheFirstRuleThatApplies) {
    databases.failures.emplace("tableName MS_gone", Error(errors::ItemNotFound));
    const JobRow row = read({{"JobDetails", {jobRecord()}}, {"MSysObjects", {}}, {"MS1", {}}, {"MS", {}},
        {"MSJob", {}}, {"MS_gone", {}}, {"ms4", {}}, {"XMS5", {}}, {"Job1", {}}, {"Jo", {}},
        {"JobAlphaIds", {{}, {}, {}, {}}}, {"JobAlphaIds2", {{}}}, {"Points", {}}});
    EXPECT_EQ(row[21] + " " + row[24] + " " + row[25], "4 3 2");
}

TEST_F(Jobs, AreSortedByFileNameWithoutCaseAndRowsStayWhole) {
    const Texts given{"b.gdb", "_x.gdb", "c.mdb", "A.gdb", "\xC3\xA4z.gdb", "Z.gdb", "1.gdb",
        "\xC3\x84"
        "a.gdb",
        "", "b.gda"};
    const Texts sorted{"", "1.gdb", "A.gdb", "b.gda", "b.gdb", "c.mdb", "Z.gdb", "_x.gdb",
        "\xC3\x84"
        "a.gdb",
        "\xC3\xA4z.gdb"};
    for (const std::string& name : given) {
        table.addJob();
        JobRow row;
        row.fill(name);
        table.jobList.push_back(row);
    }
    table.SortJobList();
    for (std::size_t i = 0; i < sorted.size(); ++i)
        for (const std::string& text : table.jobList[i])
            EXPECT_EQ(text, sorted[i]);
}

TEST_F(Jobs, AnyOrderOfAnyLengthIsSorted) {
    for (const int length : {0, 1, 2, 3, 100, int(JobTable::maximum)})
        for (const int kind : {0, 1, 2, 3, 4}) {
            table.jobCount = std::int16_t(length);
            table.jobList.assign(std::size_t(length), {});
            for (int i = 0; i < length; ++i) {
                const int number[] = {i, length - i, 7, (i * 7919) % 10007, i % 2};
                table.jobList[std::size_t(i)][0] = std::to_string(100000 + number[kind]);
            }
            table.SortJobList();
            EXPECT_TRUE(std::ranges::is_sorted(table.jobList, {}, [](const JobRow& row) { return row[0]; }))
                << kind << " " << length;
        }
}

TEST_F(Jobs, AJobsNameEndsAtItsFirstPoint) {
    const auto job = std::make_shared<fake::FakeRecord>();
    for (const auto& [file, parts] : std::map<std::string, std::string>{{"survey.old.gdb", "survey|.old.gdb"},
             {"none", "before|.x"}, {".gdb", "|.gdb"}, {"dot.", "dot|."}}) {
        job->put(job::JobName, "before");
        job->put(job::JobExtension, ".x");
        GetJobnameParts(component, *job, file);
        EXPECT_EQ(job->get(job::JobName) + "|" + job->get(job::JobExtension), parts);
    }
}

struct Discovery : Jobs {
    fake::FileFolder folder;
    std::string path = folder / "";
    JobDiscovery discovery{component, table};
    std::string caption;

    Discovery() {
        discovery.thisJob = std::make_shared<fake::FakeRecord>(std::map<std::string, Value, std::less<>>{
            {"JobPath", "  " + path + " "}, {"JobName", ""}, {"JobExtension", ""}});
        discovery.setCaption = [this](const std::string& text) { caption = text; };
        desktop.setPointer(Pointer::Hourglass);
    }
    void makeJob(const std::string& name, std::vector<fake::FakeTable> tables) {
        databases.files[folder.make(name)] = std::move(tables);
    }
    void makeJob(const std::string& name) { makeJob(name, {{"JobDetails", {jobRecord()}}}); }
    Texts jobs() {
        discovery.CompileListOfJobs();
        EXPECT_EQ(databases.open, 0);
        EXPECT_EQ(std::size_t(table.jobCount), table.jobList.size());
        Texts names;
        for (const JobRow& row : table.jobList)
            names.push_back(row[0]);
        return names;
    }
};

TEST_F(Discovery, TakesJobFilesOfAnyNameAndNothingElse) {
    for (const char* name : {"b.gdb", "A.gdb", "c.mdb", "X.MDB", "survey.old.gdb", "two words.Gdb",
             "definitions.gdb", "q\n\tq.gdb", "\xFF.gdb"})
        makeJob(name);
    const std::string longest = std::string(251, 'y') + ".gdb";
    makeJob(longest);
    for (const char* name : {"InstHelp.gdb", ".hidden.gdb", "notes.txt", "a.gdb.bak", "gdb", "a.mdbx"})
        folder.make(name);
    std::filesystem::create_directory(folder / "folder.gdb");
    std::filesystem::create_symlink(folder / "gone", folder / "broken.mdb");
    ASSERT_EQ(::mkfifo((folder / "pipe.mdb").c_str(), 0600), 0);
    discovery.thisJob->put(job::JobName, "\xFE"); // not the file whose name is as unreadable
    discovery.thisJob->put(job::JobExtension, ".gdb");
    EXPECT_EQ(jobs(), (Texts{"A.gdb", "b.gdb", "c.mdb", "definitions.gdb", "q\n\tq.gdb", "survey.old.gdb",
                          "two words.Gdb", "X.MDB", longest, "\xFF.gdb"}));
    EXPECT_EQ(databases.mostOpen, 2) << "one database and its recordset at a time";
    EXPECT_TRUE(std::ranges::count(databases.log, "OpenDatabase " + path + "A.gdb read-only"));
    EXPECT_EQ(caption, "List Jobs - " + path);
    EXPECT_EQ(desktop.pointer(), Pointer::Default);
    EXPECT_TRUE(host.log.empty() && desktop.messages.empty());

    table.jobList.clear();
    table.jobCount = 0;
    discovery.programFolder = path;
    EXPECT_EQ(std::ranges::count(jobs(), "definitions.gdb"), 0) << "the product's own";
}

TEST_F(Discovery, SaysWhenAFolderHasNoJobs) {
    const std::string noJobs = "No jobs stored !! Check folder selected";
    std::filesystem::create_directory(folder / "sub");
    makeJob("sub/a.gdb"); // not in the folder itself, nor in a path without its separator
    for (const std::string& place :
        {path, folder / "nowhere/", folder.make("file") + "/", folder / "sub", std::string("sub")}) {
        discovery.thisJob->put(job::JobPath, place);
        EXPECT_TRUE(jobs().empty());
        ASSERT_EQ(desktop.messages.size(), 1u) << place;
        EXPECT_EQ(desktop.messages[0].text, noJobs);
        desktop.messages.clear();
    }
    EXPECT_TRUE(host.log.empty());
    table.addJob();
    table.jobList.push_back({"Now.GDB"});
    discovery.thisJob->put(job::JobPath, path);
    discovery.thisJob->put(job::JobName, "Now");
    discovery.thisJob->put(job::JobExtension, ".GDB");
    makeJob("now.gdb");
    EXPECT_EQ(jobs(), Texts{"Now.GDB"}) << "the current job is not opened again";
    EXPECT_TRUE(desktop.messages.empty() && databases.log.empty());
}

TEST_F(Discovery, FailsWhenTheFolderCannotBeListed) {
    discovery.thisJob->put(job::JobPath, path + std::string(300, 'x') + "/");
    try {
        discovery.CompileListOfJobs();
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), errors::BadFileName);
        EXPECT_EQ(error.source(), "(Form) Joblist::Sub CompileListOfJobs");
    }
    EXPECT_NE(host.log.at(0).find("Cannot list the folder '" + path), std::string::npos) << host.log[0];
}

TEST_F(Discovery, ReportsAFileThatCannotBeReadAndGoesOn) {
    const std::string by = "ReportEventError (Form) Joblist::Sub CompileListOfJobs";
    folder.make("b.gdb");
    makeJob("c.gdb", {{"Points", {}}});
    makeJob("d.gdb", {{"JobDetails", {{{"Zone", "west"}}}}});
    makeJob("e.gdb", {{"JobDetails", {jobRecord()}}, {"Damaged", {}}});
    databases.failures.emplace("tableName Damaged", Error(errors::InternalError, "torn"));
    makeJob("f.gdb");
    databases.failures.emplace(
        "OpenDatabase " + path + "f.gdb read-only", Error(errors::DatabaseLocked, "in use"));
    makeJob("g.gdb");
    databases.failures.emplace("OpenDatabase " + path + "g.gdb read-only", Error(errors::ItemNotFound));
    makeJob("a.gdb");
    makeJob("h.mdb");
    EXPECT_EQ(jobs(), (Texts{"a.gdb", "h.mdb"}));
    Texts reports;
    std::ranges::copy_if(host.log, std::back_inserter(reports),
        [](const std::string& entry) { return entry.starts_with("ReportEventError"); });
    EXPECT_EQ(
        reports, (Texts{by + ": '" + path + "b.gdb' is no database",
                     by + " (Job 'c.gdb'): No table 'JobDetails'", by + " reading 'd.gdb': Type mismatch",
                     by + " reading 'e.gdb': Internal error", by + " reading 'f.gdb': in use",
                     by + " reading 'g.gdb': Object reference is not set: the job database"}));
    Texts reasons;
    for (const UnreadFile& file : discovery.unreadFiles())
        reasons.push_back(file.name + ": " + file.reason);
    EXPECT_EQ(reasons, (Texts{"b.gdb: The file is no database", "c.gdb: No table 'JobDetails'",
                           "d.gdb: Field 'Zone': 'west' is not a number", "e.gdb: torn", "f.gdb: in use",
                           "g.gdb: Object reference is not set: the job database"}));
}

TEST_F(Discovery, PassesOverWhatIsBeyondTheLimitOfTheList) {
    table.jobCount = JobTable::maximum - 1;
    table.jobList.assign(std::size_t(table.jobCount), {});
    makeJob("last.gdb");
    makeJob("more.gdb");
    EXPECT_EQ(jobs().back(), "last.gdb");
    EXPECT_EQ(table.jobCount, 32767);
    EXPECT_EQ(host.log, Texts{"ReportEventError (Form) Joblist::Sub CompileListOfJobs reading 'more.gdb': "
                              "Overflow: the job list holds at most 32767 jobs"});
}

} // namespace
