#include "joblist/c_job_list_loader.h"
#include "support/error_of.h"
#include "support/file_folder.h"
#include "support/job_world.h"

#include <gtest/gtest.h>

#include <thread>

using namespace genutil;

namespace {

using Texts = std::vector<std::string>;

// A job whose full name follows its parts, as the host's does.
struct FakeJob : fake::FakeRecord {
    Value read(std::string_view member) const override {
        if (member != job::JobFullName.name)
            return FakeRecord::read(member);
        return Value(get(job::JobPath) + get(job::JobName) + get(job::JobExtension));
    }
};

struct ListHost : fake::JobHost {
    // As wide as its columns.
    struct Procedures : fake::FakeGeneralProcedures {
        using FakeGeneralProcedures::FakeGeneralProcedures;
        double GridColumnsWidth(Control& grid, bool) override {
            double total = 0;
            for (int column = 0; column < static_cast<Grid&>(grid).columnCount(); ++column)
                total += static_cast<Grid&>(grid).column(column).width;
            return total;
        }
    };
    std::unique_ptr<GeneralProcedures> createGeneralProcedures() override {
        return std::make_unique<Procedures>(*this);
    }
    RecordPtr createRecord(const std::string& className) override {
        if (className != "job")
            return JobHost::createRecord(className);
        const auto record = std::make_shared<FakeJob>();
        record->values = {{"JobPath", ""}, {"JobName", ""}, {"JobExtension", ""}};
        return record;
    }
};

struct JobList : ::testing::Test {
    ListHost host;
    fake::FakeFiles files;
    fake::FakeDatabases databases;
    fake::ScriptedDesktop desktop;
    Component component{desktop, files, host, &databases};
    fake::FileFolder folder;
    cJobListLoader loader{component};
    RecordPtr prog = fake::programObject();
    RecordPtr help = std::make_shared<fake::FakeRecord>(
        std::map<std::string, Value, std::less<>>{{"InstantHelpOn", false}});
    std::shared_ptr<fake::FakeRecord> mainForm = std::make_shared<fake::FakeRecord>(
        std::map<std::string, Value, std::less<>>{{"windowState", std::int16_t{2}}});
    RecordPtr chosen = host.createRecord("job");
    CurrentJob current;

    JobList() {
        host.settings["DataPath"] = " " + folder / "" + " ";
        makeJob("Weir.mdb", {{"Surveyor", "ann"}, {"Date", "Tuesday, 17 Nov 2026"}, {"Reference", "9"}});
        makeJob("dam.old.gdb", {{"Surveyor", "Bo"}, {"Date", " , "}, {"Reference", "10"},
                                   {"Description", "one\ttwo\nthree"}, {"CoordType", std::int16_t{2}}});
        makeJob("_x.gdb", {{"Surveyor", ""}, {"Date", "2020-02-29"}, {"Reference", "=1"}});
    }
    void makeJob(const std::string& name, fake::FakeRow record) {
        databases.files[folder.make(name)] = {{"JobDetails", {std::move(record)}}};
    }
    bool show(const std::function<void(frmJobList&)>& act, bool showExt = true) {
        desktop.acts = {[&](Form& form) { act(dynamic_cast<frmJobList&>(form)); }};
        return loader.LoadJobListForm(chosen, help, prog, current, mainForm, showExt);
    }
    static void clickHeader(Grid& grid, std::int32_t column) {
        grid.userPress(0, column, {.onHeader = true});
        grid.userRelease();
    }
    static void click(Grid& grid, std::int32_t row, std::int32_t column = 0, bool shift = false) {
        grid.userPress(row, column, {.shift = shift});
        grid.userRelease();
    }
    static Texts texts(const Grid& grid, std::int32_t column = 0) {
        Texts all;
        for (std::int32_t row = 1; row < grid.rowCount(); ++row)
            all.push_back(grid.text(row, column));
        return all;
    }
};

TEST_F(JobList, ChangesToTheJobOfTheRowWhateverTheOrder) {
    EXPECT_TRUE(show(
        [&](frmJobList& form) {
            Grid& grid = form.flxJobList;
            EXPECT_EQ(form.caption.get(), "List Jobs - " + folder / "");
            EXPECT_EQ(texts(grid), (Texts{"dam.old", "Weir", "_x"}));
            EXPECT_EQ(texts(grid, 1), (Texts{",", "17-Nov-2026", "29-Feb-2020"}));
            EXPECT_EQ(texts(grid, 27), (Texts{"-328716", "46343", "43890"}));
            EXPECT_EQ(grid.text(1, 4) + grid.text(1, 5), "one two threeGeographic");
            EXPECT_EQ(form.lblCount.caption.get(), "3 jobs");
            EXPECT_EQ((std::array{form.left.get(), form.width.get()}), (std::array{768.0, 13824.0}));
            EXPECT_FALSE(form.cmdChangeJob.enabled) << "nothing has been chosen yet";
            clickHeader(grid, 2);
            EXPECT_EQ(texts(grid), (Texts{"dam.old", "Weir", "_x"})) << "descending, case left aside";
            clickHeader(grid, 2);
            click(grid, 3);
            EXPECT_EQ(form.cmdChangeJob.caption.get(), "Change to job 'dam.old'");
            form.cmdChangeJob.userPress();
        },
        false));
    EXPECT_EQ(chosen->get(job::JobName) + "|" + chosen->get(job::JobExtension), "dam|.old.gdb");
    EXPECT_TRUE(host.logged("InstantHelp released") && desktop.openForms.empty());
}

TEST_F(JobList, SortsByTheClickedColumnInTurn) {
    const struct {
        int column;
        Texts first, second;
    } cases[] = {
        {0, {"Weir.mdb", "dam.old.gdb", "_x.gdb"}, {"_x.gdb", "dam.old.gdb", "Weir.mdb"}},
        {1, {"Weir.mdb", "_x.gdb", "dam.old.gdb"}, {"dam.old.gdb", "_x.gdb", "Weir.mdb"}},
        {2, {"dam.old.gdb", "Weir.mdb", "_x.gdb"}, {"_x.gdb", "Weir.mdb", "dam.old.gdb"}},
        {3, {"_x.gdb", "dam.old.gdb", "Weir.mdb"}, {"Weir.mdb", "dam.old.gdb", "_x.gdb"}},
    };
    for (const auto& each : cases)
        show([&](frmJobList& form) {
            Grid& grid = form.flxJobList;
            clickHeader(grid, each.column);
            EXPECT_EQ(texts(grid), each.first) << each.column;
            EXPECT_EQ(grid.selection(), (GridRange{1, each.column, 3, each.column}));
            EXPECT_EQ(grid.sortMark.get(), (SortMark{each.column, false}));
            EXPECT_EQ(form.thisJob->get(job::JobName) + form.thisJob->get(job::JobExtension), each.first[0]);
            clickHeader(grid, each.column);
            EXPECT_EQ(texts(grid), each.second) << each.column;
        });
}

TEST_F(JobList, IsSortedByKeysWithASecondOneAndTheCurrentRowStays) {
    makeJob("a.mdb", {{"Surveyor", "Bo"}, {"Date", "2020-02-29"}});
    show([&](frmJobList& form) {
        Grid& grid = form.flxJobList;
        click(grid, 2, 2); // dam.old.gdb, by Bo
        const struct {
            MenuItem& item;
            int column;
            Texts jobs;
            SortMark first, second;
        } cases[] = {
            {form.mnuSortUp, 2, {"_x.gdb", "Weir.mdb", "a.mdb", "dam.old.gdb"}, {2, true}, {}},
            {form.mnuSortDown, 1, {"Weir.mdb", "a.mdb", "_x.gdb", "dam.old.gdb"}, {1, false}, {}},
            {form.mnuThenUp, 2, {"_x.gdb", "Weir.mdb", "a.mdb", "dam.old.gdb"}, {2, true}, {1, false}},
            {form.mnuThenDown, 2, {"a.mdb", "dam.old.gdb", "Weir.mdb", "_x.gdb"}, {2, false}, {1, false}},
            {form.mnuSortDown, 0, {"Weir.mdb", "dam.old.gdb", "a.mdb", "_x.gdb"}, {0, false}, {}},
            {form.mnuThenUp, 2, {"_x.gdb", "Weir.mdb", "dam.old.gdb", "a.mdb"}, {2, true}, {0, false}},
            {form.mnuSortUp, 2, {"_x.gdb", "Weir.mdb", "a.mdb", "dam.old.gdb"}, {2, true}, {}},
        };
        for (const auto& each : cases) {
            grid.userMove(grid.selection().row, each.column, false);
            each.item.userChoose();
            EXPECT_EQ(texts(grid), each.jobs) << each.item.name() << each.column;
            EXPECT_EQ(grid.text(grid.selection().row, 0), "dam.old.gdb");
            EXPECT_TRUE(grid.sortMark == each.first && grid.secondSortMark == each.second);
        }
        clickHeader(grid, 0);
        EXPECT_EQ(grid.sortMark.get(), (SortMark{0, false})) << "the first click sorts in descending order";
    });
}

TEST_F(JobList, ShowsWhichFilesCouldNotBeReadBesideTheJobs) {
    makeJob("Bad.mdb", {{"Zone", "55 north"}});
    folder.make("text.mdb");
    show([&](frmJobList& form) {
        Grid& list = form.flxUnread;
        EXPECT_EQ(form.lblCount.caption.get() + "|" + form.cmdUnread.caption.get(),
            "3 jobs|2 files could not be &read");
        form.cmdUnread.userPress();
        EXPECT_TRUE(form.pnlUnread.visible && form.activeControl() == &list);
        EXPECT_EQ(form.flxJobList.rowCount(), 4);
        form.mnuUnreadSelectAll.userChoose();
        form.mnuUnreadCopy.userChoose();
        EXPECT_EQ(desktop.clipboard().text(),
            "Bad.mdb\tField 'Zone': '55 north' is not a number\r\ntext.mdb\tThe file is no database");
        clickHeader(list, 0);
        clickHeader(list, 0);
        EXPECT_EQ(texts(list), (Texts{"text.mdb", "Bad.mdb"}));
        EXPECT_TRUE(form.userKey({.code = key::Escape}));
        EXPECT_TRUE(form.isLoaded() && !form.pnlUnread.visible && form.activeControl() == &form.flxJobList);
        form.cmdUnread.userPress();
        form.cmdUnread.userPress();
        EXPECT_FALSE(form.pnlUnread.visible);
        EXPECT_EQ(list.rowCount(), 3);
    });
}

TEST_F(JobList, ListsTheCurrentJobFromTheHostAndNeverChangesToIt) {
    current.job = host.createRecord("job");
    current.job->put(job::JobPath, folder / "");
    current.job->put(job::JobName, "weir");
    current.job->put(job::JobExtension, ".MDB");
    current.jobDetails = host.createRecord("jobDetails");
    current.jobDetails->put(jobdetails::Surveyor, "host's own");
    current.jobCfg = current.jobGeneral = host.createRecord("jobCfg");
    current.jobDB = std::make_shared<fake::FakeDatabase>(databases, databases.files[folder / "Weir.mdb"]);
    current.jobDetailsRset = current.jobDB->OpenRecordset("JobDetails");
    mainForm->values = {
        {"windowState", std::int16_t{0}}, {"Top", 1000}, {"Left", 2000}, {"Width", 20000}, {"Height", 15000}};
    const auto size = [](double width, double height) {
        return std::make_shared<fake::FakeRecord>(
            std::map<std::string, Value, std::less<>>{{"Width", width}, {"Height", height}});
    };
    mainForm->children = {{"picPlot", size(16000, 9000)}, {"picContainer", size(0, 500)}};
    desktop.answers = {Answer::No, Answer::Yes};
    EXPECT_FALSE(show([&](frmJobList& form) {
        EXPECT_EQ((std::array{form.left.get(), form.top.get(), form.width.get(), form.height.get()}),
            (std::array{4000.0, 6420.0, 16000.0, 9000.0}));
        Grid& grid = form.flxJobList;
        EXPECT_EQ(texts(grid, 2), (Texts{"Bo", "host's own", ""}));
        click(grid, 2);
        EXPECT_FALSE(form.cmdChangeJob.enabled);
        EXPECT_EQ(grid.rowNumber(2), grid.rowMark.get().number);
        grid.userDoubleClick();
        EXPECT_TRUE(desktop.messages.empty()) << "it is the current job";
        click(grid, 1);
        EXPECT_TRUE(form.cmdChangeJob.enabled);
        grid.userDoubleClick();
        EXPECT_TRUE(form.isLoaded()) << "answered No";
        clickHeader(grid, 0);
        clickHeader(grid, 0);
        grid.userDoubleClick();
        EXPECT_EQ(desktop.messages.size(), 1u) << "the header is no job";
        form.cmdExit.userPress();
    }));
    EXPECT_EQ(desktop.messages.at(0).text, "Change to job 'dam.old.gdb' ?");
    EXPECT_EQ(chosen->get(job::JobName), "") << "untouched";
    EXPECT_EQ(std::ranges::count(databases.log, "OpenDatabase " + folder / "Weir.mdb" + " read-only"), 0);
    EXPECT_TRUE(show([&](frmJobList& form) {
        click(form.flxJobList, 1);
        form.flxJobList.userDoubleClick();
    }));
    // Another spelling of the current job's own file is the current job.
    EXPECT_FALSE(show([&](frmJobList& form) { form.ChangeToJob(); }));
}

TEST_F(JobList, CopiesTheSelectionAsText) {
    makeJob("Weir.mdb", {{"Surveyor", "ann"}, {"Description", std::string(500, 'd')}});
    host.settings["JobListColumns"] = "Reference=*;Job=900;Surveyor=*;Create Date=*,hidden;Nothing=x";
    show([&](frmJobList& form) {
        Grid& grid = form.flxJobList;
        const auto copied = [&] { return desktop.clipboard().text(); };
        EXPECT_EQ(grid.column(4).width, grid.width - 500) << "no wider than the grid";
        click(grid, 2, 0);
        form.ClipboardCopyCut();
        EXPECT_EQ(copied(), "Weir.mdb");
        click(grid, 3, 2, true); // Surveyor: the columns as they stand, without the hidden one
        form.ClipboardCopyCut();
        EXPECT_EQ(copied(), "Weir.mdb\tann\r\n_x.gdb\t");
        form.mnuCopyTitles.userChoose();
        EXPECT_EQ(copied(), "Job\tSurveyor\r\nWeir.mdb\tann\r\n_x.gdb\t");
        EXPECT_EQ(grid.selection(), (GridRange{2, 0, 3, 2}));
        click(grid, 1, 6);
        click(grid, 3, 6, true);
        form.ClipboardCopyCut();
        EXPECT_EQ(copied(), "\r\n\r\n") << "empty cells are cells";
        form.userKey({.code = key::A, .ctrl = true});
        form.mnuRecordCopy.userChoose();
        EXPECT_TRUE(copied().starts_with("Reference\tJob\tSurveyor\tDescription"));
        EXPECT_EQ(std::ranges::count(copied(), '\n'), 3);
        EXPECT_EQ(std::ranges::count(copied(), '\t'), 4 * 25);
        EXPECT_EQ(copied().find("46343"), std::string::npos) << "date keys are not for copying";

        desktop.chosenFiles = {"/out/jobs.csv"};
        form.txtFilter.userEdit("X.G");
        form.mnuExportCsv.userChoose();
        EXPECT_TRUE(files.bytesOf("/out/jobs.csv").starts_with("\xEF\xBB\xBFReference,Job,Surveyor,"));
        EXPECT_NE(files.bytesOf("/out/jobs.csv").find("\n'=1,_x.gdb,,,Plane,"), std::string::npos);
    });
}

TEST_F(JobList, OpensTheRecordMenuOnAPlainRightPressOnly) {
    show([&](frmJobList& form) {
        Texts menus;
        desktop.onPopUp = [&](MenuItem& menu) {
            menus.push_back(menu.name() + (form.mnuRecordCopy.enabled ? " copies" : ""));
        };
        Grid& grid = form.flxJobList;
        const auto press = [&](std::int32_t column, bool shift = false) {
            grid.userPress(1, column, {.button = MouseButton::Right, .shift = shift});
        };
        press(0);
        EXPECT_EQ(menus, Texts{"mnuRecordMenu"});
        EXPECT_TRUE(form.mnuRecordCopy.enabled) << "its key copies one cell, too";
        grid.select({1, 0, 2, 1});
        press(1);
        grid.setColumnWidth(27, 300);
        press(1);
        EXPECT_EQ(grid.column(27).width, 300);
        press(1, true);
        EXPECT_EQ(grid.column(27).width, 0) << "date keys stay out of sight";
        EXPECT_EQ(menus, (Texts{"mnuRecordMenu", "mnuRecordMenu copies", "mnuRecordMenu copies"}));
    });
}

TEST_F(JobList, ShowsTheJobsThatHoldEveryWord) {
    makeJob(
        "mu\u0308ller.gdb", {{"Surveyor", "M\u00dcLLER"}, {"Description", "Gro\u00dfe Wiese, noon 12:30"}});
    show([&](frmJobList& form) {
        Grid& grid = form.flxJobList;
        click(grid, 4);
        const std::pair<const char*, Texts> cases[] = {{"GDB", {"dam.old.gdb", "mu\u0308ller.gdb", "_x.gdb"}},
            {" nov weir ", {"Weir.mdb"}}, {"geo one", {"dam.old.gdb"}}, {"gdbbo", {}}, {"46343", {}},
            {"m\u00fcll", {"mu\u0308ller.gdb"}}, {"SURV:muller", {"mu\u0308ller.gdb"}}, {"surveyor:weir", {}},
            {"coordsystem:plane grosse", {"mu\u0308ller.gdb"}}, {"\"coord system:geo\" bo", {"dam.old.gdb"}},
            {"\"two three\"", {"dam.old.gdb"}}, {"\"three two\"", {}}, {"createdate:2020 job:x", {"_x.gdb"}},
            {"noon 12:30", {"mu\u0308ller.gdb"}}, {"reference:10 surveyor:\"b", {"dam.old.gdb"}},
            {"ref: surveyor:ann", {"Weir.mdb"}},
            {"", {"dam.old.gdb", "mu\u0308ller.gdb", "Weir.mdb", "_x.gdb"}}};
        for (const auto& [words, jobs] : cases) {
            form.txtFilter.userEdit(words);
            EXPECT_EQ(texts(grid), jobs) << words;
            EXPECT_EQ(form.cmdChangeJob.enabled.get(), !jobs.empty()) << words;
            EXPECT_EQ(
                form.lblCount.caption.get(), *words ? std::to_string(jobs.size()) + " of 4 jobs" : "4 jobs");
        }
        click(grid, 1);
        form.txtFilter.userEdit("weir");
        EXPECT_EQ(form.thisJob->get(job::JobName), "Weir") << "another job stands in the current row";
        form.txtFilter.userEdit("gdb");
        clickHeader(grid, 0);
        EXPECT_EQ(texts(grid), (Texts{"mu\u0308ller.gdb", "dam.old.gdb", "_x.gdb"}));
        form.txtFilter.setFocus();
        EXPECT_FALSE(form.userKey({.code = key::A, .ctrl = true})) << "selects the words";
        EXPECT_TRUE(form.userKey({.code = key::Escape}));
        EXPECT_TRUE(form.isLoaded() && grid.rowCount() == 5) << "Escape empties the filter first";
    });
}

TEST_F(JobList, RemembersTheColumnsByTheirTitles) {
    show([&](frmJobList& form) {
        form.flxJobList.userResizeColumn(3, 777);
        form.flxJobList.userMoveColumn(3, 0);
        form.mnuColumn[2].userChoose();
        form.cmdExit.userPress();
    });
    EXPECT_TRUE(host.settings["JobListColumns"].starts_with(
        "Reference=777;Job=*;Create Date=*;Surveyor=*,hidden;Description=*;"))
        << host.settings["JobListColumns"];
    show([&](frmJobList& form) {
        const Grid& grid = form.flxJobList;
        EXPECT_EQ(grid.columnsBetween(3, 5), (std::vector<std::int32_t>{3, 0, 1, 4, 5}));
        EXPECT_EQ(grid.column(3).width, 777);
        EXPECT_FALSE(form.mnuColumn[2].checked);
        form.mnuResetColumns.userChoose();
        EXPECT_EQ(grid.columnsBetween(0, 3), (std::vector<std::int32_t>{0, 1, 2, 3}));
        EXPECT_EQ(grid.column(3).width, 900) << "as wide as its title again";
        for (MenuItem& column : form.mnuColumn)
            column.userChoose();
        EXPECT_EQ(grid.columnsBetween(0, 27), (std::vector<std::int32_t>{26, 27})) << "one stays";
        host.failing = {"WriteSetting"};
        form.cmdExit.userPress();
    });
    EXPECT_TRUE(desktop.openForms.empty()) << "closes although the settings cannot be written";
}

TEST_F(JobList, ShowsALongReadingAndEndsItWhenAsked) {
    for (int i = 0; i < 8; ++i)
        makeJob("slow" + std::to_string(i) + ".mdb", {});
    for (const bool leaves : {false, true}) {
        databases.log.clear();
        desktop.onEvents = [&, leaves] {
            auto& form = dynamic_cast<frmJobList&>(*desktop.openForms.back());
            EXPECT_TRUE(form.pnlReading.visible && !form.cmdChangeJob.enabled);
            EXPECT_TRUE(form.lblReading.caption.get().starts_with("Reading file "));
            (leaves ? form.cmdExit : form.cmdStopReading).userPress();
        };
        databases.onOpen = [] { std::this_thread::sleep_for(std::chrono::milliseconds(120)); };
        bool shown = false;
        EXPECT_FALSE(show([&](frmJobList& form) {
            shown = true;
            EXPECT_FALSE(form.pnlReading.visible);
            EXPECT_EQ(form.flxJobList.rowCount(), form.table.jobCount + 1);
            EXPECT_NE(form.lblCount.caption.get().find(", stopped before "), std::string::npos);
        }));
        EXPECT_EQ(shown, !leaves);
        EXPECT_TRUE(desktop.openForms.empty());
    }
}

TEST_F(JobList, DoesNotOpenOverADateThatIsNone) {
    makeJob("Bad.mdb", {{"Date", "soon"}});
    EXPECT_EQ(fake::errorOf([&] { show([](frmJobList&) { FAIL(); }); }), errors::TypeMismatch);
    EXPECT_TRUE(host.logged("ReportProcError (Form) Joblist::Sub ListJobs: Job 'Bad.mdb': 'soon' cannot be "
                            "read as a date"));
    EXPECT_TRUE(desktop.openForms.empty() && !loader.form());
}

} // namespace
