#include "joblist/job_listing.h"

#include "support/error_of.h"
#include "support/file_folder.h"
#include "support/job_world.h"

#include <gtest/gtest.h>

using namespace genutil;

namespace {

struct ListingHost : fake::JobHost {
    RecordPtr createRecord(const std::string& className) override {
        if (className != "job")
            return JobHost::createRecord(className);
        const auto record = std::make_shared<fake::FakeRecord>();
        record->values = {{"JobPath", ""}, {"JobName", ""}, {"JobExtension", ""}};
        return record;
    }
};

struct Listing : ::testing::Test {
    ListingHost host;
    fake::FakeFiles files;
    fake::FakeDatabases databases;
    fake::ScriptedDesktop desktop;
    Component component{desktop, files, host, &databases};
    fake::FileFolder folder;
    JobListing listing{component};

    void makeJob(const std::string& name, fake::FakeRow record) {
        databases.files[folder.make(name)] = {{"JobDetails", {std::move(record)}}};
    }
};

TEST_F(Listing, IsWrittenAsTextForOtherPrograms) {
    makeJob("a\x1b[.mdb", {{"Surveyor", "+\"x\","}, {"Reference", "-5"}, {"Zone", -1}, {"ValidHorizPts", 7},
                              {"Description", "a\tb\r\nc"}, {"Date", "soon"}});
    makeJob("b.mdb", {{"Date", "1 Feb 2026"}, {"Surveyor", std::string(60, 'w')}});
    EXPECT_EQ(listing.ReadFolder(folder / "", nullptr), 2);
    const std::pair<const char*, std::string> cases[] = {
        {"csv", "Job,Create Date,Surveyor,Reference,Description,Coord System,Projection,H.Datum,Zone,Points\n"
                "b.mdb,01-Feb-2026," +
                    std::string(60, 'w') +
                    ",,,Plane,,,0,0\n"
                    "a\x1b[.mdb,soon,\"'+\"\"x\"\",\",'-5,a\tb c,Plane,,,-1,7\n"},
        {"tsv",
            "Job\tCreate Date\tSurveyor\tReference\tDescription\tCoord System\tProjection\tH.Datum\tZone\t"
            "Points\nb.mdb\t01-Feb-2026\t" +
                std::string(60, 'w') +
                "\t\t\tPlane\t\t\t0\t0\n"
                "a\x1b[.mdb\tsoon\t\"'+\"\"x\"\",\"\t'-5\t\"a\tb c\"\tPlane\t\t\t-1\t7\n"},
        {"json",
            "[\n  {\"Job\": \"b.mdb\", \"Create Date\": \"01-Feb-2026\", \"Surveyor\": \"" +
                std::string(60, 'w') +
                "\", \"Reference\": \"\", \"Description\": \"\", \"Coord System\": "
                "\"Plane\", \"Projection\": \"\", \"H.Datum\": \"\", \"Zone\": 0, \"Points\": 0},\n"
                "  {\"Job\": \"a\\u001b[.mdb\", \"Create Date\": \"soon\", \"Surveyor\": \"+\\\"x\\\",\", "
                "\"Reference\": \"-5\", \"Description\": \"a\\u0009b c\", \"Coord System\": \"Plane\", "
                "\"Projection\": \"\", \"H.Datum\": \"\", \"Zone\": -1, \"Points\": 7}\n]\n"},
    };
    for (const auto& [format, text] : cases)
        EXPECT_EQ(listing.Write(format, "-JOB", {}), text) << format;
    const std::string table = listing.Write("table", "Create Date", {.allColumns = true});
    EXPECT_TRUE(table.starts_with("Job      Create Date  Surveyor")) << table;
    EXPECT_NE(table.find("\na\uFFFD[.mdb     soon      +\"x\","), std::string::npos) << table;
    EXPECT_NE(table.find(" " + std::string(40, 'w') + "…"), std::string::npos) << table;
    EXPECT_EQ(fake::errorOf([&] { listing.Write("xml", "", {}); }), errors::InvalidCall);
    EXPECT_EQ(fake::errorOf([&] { listing.Write("csv", "Jobs", {}); }), errors::InvalidCall);

    std::filesystem::resize_file(folder / "b.mdb", 12'000);
    std::filesystem::remove(folder / "a\x1b[.mdb");
    const std::string lines = listing.Write("csv", "-size", {.fileColumns = true, .isoDates = true});
    EXPECT_NE(lines.find(",Points,Size,Modified\nb.mdb,2026-02-01,"), std::string::npos) << lines;
    EXPECT_NE(lines.find(",0,12000,20"), std::string::npos) << lines;
    EXPECT_TRUE(lines.ends_with(",7,,\n")) << "its file has gone";
    EXPECT_NE(
        listing.Write("table", "Modified", {.fileColumns = true}).find("  11.7 KB  20"), std::string::npos);
}

} // namespace
