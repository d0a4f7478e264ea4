#include "host/current_job.h"
#include "host/database_objects.h"
#include "host/job_panel.h"
#include "host/job_schema.h"
#include "host/late_bound.h"
#include "host/ls_option_set.h"
#include "host/main_form_object.h"
#include "host/reading_problem.h"
#include "host/services.h"
#include "host/settings_file.h"
#include "hostif/error.h"
#include "platform/database/database_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QScreen>
#include <QTemporaryDir>
#include <QWidget>

using namespace kestal;
using testing::HasSubstr;

namespace {

class HostJobs : public testing::Test {
protected:
    QString path(const QString& name) const { return folder_.filePath(name); }
    std::string file(const QString& name) const { return path(name).toStdString(); }
    std::shared_ptr<genutil::Database> open(const QString& name, bool readOnly = false) const {
        return genutil::makeDatabaseEngine()->OpenDatabase(file(name), false, readOnly);
    }
    // The fields of the first details record of a job that is made for it.
    void makeJob(const QString& name, const std::map<std::string, genutil::Value>& fields) const {
        createJob(file(name));
        const auto details = open(name)->OpenRecordset(job_tables::Details);
        details->Edit();
        for (const auto& [field, value] : fields)
            details->setField(field, value);
        details->Update();
    }

private:
    QTemporaryDir folder_;
};

Variant text(const std::string& utf8) {
    return Variant(std::string_view(utf8));
}

// The error number of a late-bound act, or 0.
template<class Act>
int errorOf(Act act) {
    try {
        act();
    } catch (const AutomationError& error) {
        EXPECT_STRNE(error.what(), "");
        return error.number();
    }
    return 0;
}

TEST_F(HostJobs, ADatabaseIsReadAndWrittenByMemberNames) {
    createJob(file("a.gdb"));
    const auto object = makeDatabaseObject(open("a.gdb"));
    const LateBound database(object.get());
    const LateBound tables = database.child("TableDefs");
    const int count = int32Of(tables.get("Count"));
    std::string names;
    for (int i = 0; i < count; ++i)
        names += textOf(LateBound(objectOf(tables.call("Item", {Variant(i)}))).get("Name")) + " ";
    EXPECT_EQ(names, "JobDetails AlphaIds Points Heights DataHeader ");

    const LateBound points(objectOf(database.call("OpenRecordset", {Variant("points")})));
    EXPECT_TRUE(truthOf(points.get("EOF")));
    points.call("AddNew", {});
    const std::pair<const char*, Variant> values[] = {
        {"PointNo", Variant(7)}, {"Code", text("Łódź 測")}, {"X", Variant(331200.1234567891)}};
    for (const auto& [name, value] : values)
        LateBound(objectOf(points.child("Fields").call("Item", {Variant(name)}))).put("Value", value);
    points.call("Update", {});
    points.call("MoveFirst", {});
    for (const auto& [name, value] : values)
        EXPECT_TRUE(sameValue(fieldOf(points.object(), name), value)) << name;
    EXPECT_EQ(fieldOf(points.object(), "Y").vt, VT_NULL);
    EXPECT_EQ(int32Of(LateBound(objectOf(tables.call("Item", {Variant("POINTS")}))).get("RecordCount")), 1);
}

TEST_F(HostJobs, ErrorsOfTheEngineKeepTheirNumbers) {
    createJob(file("a.gdb"));
    const auto object = makeDatabaseObject(open("a.gdb", true));
    const LateBound database(object.get());
    const LateBound tables = database.child("TableDefs");
    const LateBound details(objectOf(database.call("OpenRecordset", {Variant("JobDetails")})));
    const LateBound points(objectOf(database.call("OpenRecordset", {Variant("Points")})));
    const std::pair<int, std::function<void()>> cases[] = {
        {3078, [&] { database.call("OpenRecordset", {Variant("Nothing")}); }},
        {3265, [&] { tables.call("Item", {Variant("Nothing")}); }},
        {3265, [&] { tables.call("Item", {Variant(5)}); }},
        {3265, [&] { tables.call("Item", {Variant(-1)}); }},
        {3265, [&] { tables.call("Item", {Variant(100000)}); }},
        {3265, [&] { fieldOf(details.object(), "CreatedBy"); }},
        {3265, [&] { points.child("Fields").call("Item", {Variant("Nothing")}); }},
        {3021, [&] { fieldOf(points.object(), "Code"); }},
        {3021, [&] { points.call("MoveNext", {}); }},
        {3027, [&] { details.call("Edit", {}); }},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(errorOf(cases[i].second), cases[i].first) << "case " << i;
    details.call("Close", {});
    EXPECT_EQ(errorOf([&] { details.get("EOF"); }), errors::ObjectNotSet);
}

TEST_F(HostJobs, AJobIsOpenedWithWhatItsDetailsSay) {
    makeJob("survey.old.gdb",
        {{"Description", "Weir"}, {"NValue", 12.3456789}, {"InterpMethod", "Q"}, {"GridFile", "*"},
            {"CoordType", genutil::Null()}, {"Zone", "55 north"}, {"ValidHorizPts", 42}});
    CurrentJob job;
    job.open(path("survey.old.gdb"));
    EXPECT_EQ(job.job->text("JobPath"), file("") + "/");
    EXPECT_EQ(job.job->text("JobName"), "survey");
    EXPECT_EQ(job.job->text("JobExtension"), ".old.gdb");
    EXPECT_EQ(job.jobDetails->text("Description"), "Weir");
    EXPECT_EQ(numberOf(job.jobCfg->value("NValue")), 12.34568);
    EXPECT_EQ(job.jobCfg->text("InterpMethod"), "Biquadratic");
    EXPECT_EQ(job.jobCfg->text("GridFile"), "");
    EXPECT_EQ(int16Of(job.jobCfg->value("CoordType")), -1) << "Null leaves the default";
    EXPECT_EQ(int32Of(job.jobGeneral->value("ValidHorizPts")), 42);
    ASSERT_EQ(job.faults.size(), 1) << "a field that does not fit is left out and named";
    EXPECT_THAT(job.faults[0].toStdString(), HasSubstr("Zone"));

    // What cannot be opened leaves the job as it is.
    QFile(path("text.mdb")).open(QIODevice::WriteOnly);
    for (const char* name : {"text.mdb", "missing.gdb"}) {
        try {
            job.open(path(name));
            ADD_FAILURE() << name;
        } catch (const genutil::Error& error) {
            EXPECT_THAT(error.description(), HasSubstr(name));
        }
        EXPECT_EQ(job.job->text("JobName"), "survey");
    }
    const LateBound byName(job.job.get());
    byName.put("JobName", Variant("other"));
    EXPECT_EQ(textOf(byName.get("JobFullName")), file("other.old.gdb")) << "it follows its parts";
    EXPECT_EQ(
        textOf(LateBound(objectOf(byName.call("Clone", {}))).get("JobFullName")), file("other.old.gdb"));
}

TEST_F(HostJobs, AJobWithoutADetailsRecordIsOpenedAndShown) {
    const std::vector<genutil::NewTable> tables{
        {job_tables::Details, {{"Date", genutil::ColumnType::Text}}, {}}};
    genutil::createSqliteDatabase(file("bare.mdb"), tables);
    CurrentJob job;
    job.open(path("bare.mdb"));
    EXPECT_TRUE(job.faults.isEmpty());
    EXPECT_THAT(jobPage(job).toStdString(), HasSubstr("(Incomplete database)"));

    job.jobDetails->set("Description", text("<img src='x'>" + std::string(100'000, 'x')));
    const std::string page = jobPage(job).toStdString();
    EXPECT_THAT(page, Not(HasSubstr("<img"))) << "texts of a job are not markup";
    EXPECT_LT(page.size(), 10'000u);
}

TEST_F(HostJobs, ANewJobNeverTakesThePlaceOfAnotherFile) {
    makeJob("a.gdb", {{"Description", "keep"}});
    QFile::link(path("nowhere"), path("link.gdb"));
    QDir().mkpath(path("folder.gdb"));
    const std::pair<const char*, int> cases[] = {{"a.gdb", 58}, {"link.gdb", 58}, {"folder.gdb", 58},
        {"no/such/b.gdb", 76}, {"a.gdb/b.gdb", 76}, {"c.txt", 52}};
    for (const auto& [name, number] : cases) {
        try {
            createJob(file(name));
            ADD_FAILURE() << name;
        } catch (const genutil::Error& error) {
            EXPECT_EQ(error.number(), number) << name << ": " << error.description();
            EXPECT_THAT(error.description(), HasSubstr(number == 76 ? "folder" : name));
        }
    }
    EXPECT_EQ(open("a.gdb")->OpenRecordset("JobDetails")->field("Description"), genutil::Value("keep"));
    const std::vector<genutil::NewTable> wrong{{"T", {{"A", genutil::ColumnType::Text}}, {{{"B", "x"}}}}};
    EXPECT_THROW(genutil::createSqliteDatabase(file("wrong.gdb"), wrong), genutil::Error);
    EXPECT_EQ(QDir(path("")).entryList(QDir::Files | QDir::Hidden | QDir::System).join(' ').toStdString(),
        "a.gdb link.gdb")
        << "a failure leaves nothing behind";
}

TEST_F(HostJobs, LeastSquaresOptionsKeepTheirTypesAndOutliveTheSession) {
    const auto options = makeLsOptionSet();
    const std::map<VARTYPE, char> letters{
        {VT_R8, 'd'}, {VT_R4, 'f'}, {VT_BOOL, 'b'}, {VT_I2, 's'}, {VT_I4, 'l'}, {VT_BSTR, 't'}};
    const std::pair<const char*, Variant> changes[] = {{"DisConst", Variant(0.0071)},
        {"Corrections", Variant(2)}, {"ConfLevelOutliers", Variant(997)}, {"Dump", Variant(1)},
        {"SDConstrFactor", Variant("500")}, {"SavePtEntryOpt", Variant(-1)}};
    for (const auto& [name, value] : changes)
        LateBound(options.get()).put(name, value);
    std::string types;
    for (const auto& field : options->fields())
        types += letters.at(options->value(field.name).vt);
    EXPECT_EQ(types, "ddbbbbbdddddddsdddddddddlbbtfltfdddddddddddddddsbbbbs");
    EXPECT_THROW(options->set("ConfLevelOutliers", Variant(1e39)), ConversionError);

    storeSettings(file("kestal.ini"), lsOptionSettings(*options.get()));
    const auto again = makeLsOptionSet();
    EXPECT_TRUE(readLsOptionSet(*again.get(), loadSettings(file("kestal.ini"))).isEmpty());
    for (const auto& field : options->fields())
        EXPECT_TRUE(sameValue(again->value(field.name), options->value(field.name))) << field.name;

    writeSetting(file("kestal.ini"), "LeastSquares", "Iterations", "many");
    writeSetting(file("kestal.ini"), "LeastSquares", "ConfLevelChiSquared", "1e39");
    const auto repaired = makeLsOptionSet();
    const QString faults = readLsOptionSet(*repaired.get(), loadSettings(file("kestal.ini"))).join('\n');
    EXPECT_THAT(faults.toStdString(), AllOf(HasSubstr("Iterations"), HasSubstr("ConfLevelChiSquared")));
    EXPECT_EQ(int16Of(repaired->value("Iterations")), 10);
    EXPECT_EQ(numberOf(repaired->value("DisConst")), 0.0071) << "the others are used";
}

TEST(ReadingProblems, TellFileAndReasonOfAReport) {
    const std::string reading = "(Form) Joblist::Sub CompileListOfJobs";
    struct Case {
        std::string description, procedure;
        const char *file, *reason;
    };
    const Case cases[] = {
        {"'/d/O'Hara's.mdb' has no table 'JobDetails'", reading + " (Job 'O'Hara's.mdb')", "O'Hara's.mdb",
            "The file has no table 'JobDetails'"},
        {"Field 'Zone': Overflow", reading + " reading 'a.gdb'", "a.gdb", "Field 'Zone': Overflow"},
        {"'/d/x y.mdb' is not a job database: why", reading, "x y.mdb",
            "The file is not a job database: why"},
        {"Out of memory", reading, "", "Out of memory"},
        {"The table [T] in '/bin/sh' has no fields", reading, "sh", "The table [T] in 'sh' has no fields"},
        {"Cannot open '/d/x.gdb': gone", reading + " reading 'x.gdb'", "x.gdb", "Cannot open 'x.gdb': gone"},
        {"'/d/x.gdb': it is torn", reading, "x.gdb", "it is torn"},
    };
    for (const Case& each : cases) {
        const auto problem = readingProblem(each.description, each.procedure);
        ASSERT_TRUE(problem) << each.description;
        EXPECT_EQ(problem->file, each.file);
        EXPECT_EQ(problem->reason, each.reason);
    }
    EXPECT_FALSE(readingProblem("Overflow", "(Form) Joblist::Sub ListJobs"));
}

// Two columns, as the grid of the component's list shows them to a host.
class FakeGrid : public AutomationObject {
public:
    FakeGrid() : AutomationObject("grid") {
        property("Cols", [] { return Variant(2); });
        method("ColWidth", [](std::int32_t column) { return 600.5 + column; });
    }
};

TEST(HostServices, MeasureGridsAndTheMainWindowInTwips) {
    const auto service = makeGenProcs(nullptr);
    const auto grid = Ref<IDispatch>::adopt(new FakeGrid);
    const LateBound genProcs(service.get());
    EXPECT_EQ(numberOf(genProcs.call("GridColumnsWidth", {Variant(grid.get()), Variant(true)})), 1202.0);

    auto window = std::make_unique<QWidget>();
    auto* plot = new QWidget(window.get());
    window->setGeometry(20, 30, 640, 480);
    plot->setGeometry(0, 20, 600, 400);
    const auto object = makeMainFormObject(nullptr, *window, *plot);
    const LateBound mainForm(object.get());
    const double twips = 1440 / window->screen()->logicalDotsPerInch();
    EXPECT_EQ(int16Of(mainForm.get("WindowState")), 0);
    EXPECT_EQ(numberOf(mainForm.get("Width")), window->frameGeometry().width() * twips);
    EXPECT_EQ(numberOf(mainForm.child("picPlot").get("Height")), 400 * twips);
    EXPECT_EQ(numberOf(mainForm.child("picContainer").get("Height")),
        (window->frameGeometry().bottom() - window->geometry().top() - 419) * twips);
    window->showMaximized();
    EXPECT_EQ(int16Of(mainForm.get("windowState")), 2);
    window.reset();
    EXPECT_EQ(errorOf([&] { mainForm.get("Top"); }), errors::ObjectNotSet);
}

} // namespace
