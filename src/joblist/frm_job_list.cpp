#include "joblist/frm_job_list.h"

#include "joblist/job_cells.h"
#include "joblist/job_names.h"
#include "joblist/text_widths.h"
#include "text/blanks.h"

#include <algorithm>

namespace genutil {
namespace {

using namespace std::chrono_literals;

constexpr HelpTopics helpTopics{1400, 1401, 1403, 19002, 19002};

constexpr double designWidth = 12000;
constexpr double designHeight = 7200;
constexpr double gridMargin = 60;    // what the form is wider than its grid
constexpr double columnMargin = 500; // what a column that would fill the grid is narrower than it
constexpr int mostBlanks = 4000;     // a host whose column widths never grow must not stop the set-up

// One entry for each column, to show and hide it.
std::deque<MenuItem> columnItems(Form& form, MenuItem& menu) {
    std::deque<MenuItem> items;
    for (std::size_t i = 0; i < jobColumnCount; ++i)
        items.emplace_back(form, "mnuColumn" + std::to_string(i + 1), jobColumns()[i].title, &menu)
            .isCheckable = true;
    return items;
}

constexpr auto patience = 500ms; // reading that takes longer is shown
constexpr auto turn = 40ms;      // between two looks at the user's acts

} // namespace

frmJobList::frmJobList(Component& owner)
    : DialogForm(owner, "frmJobList", "Joblist", "List Jobs"), table(owner), flxJobList(*this, "flxJobList"),
      cmdChangeJob(*this, "cmdChangeJob", "Change to job 'NEWJOB'"), cmdExit(*this, "cmdExit", "E&xit"),
      pnlHelp(*this, "pnlHelp"), mnuRecordMenu(*this, "mnuRecordMenu", "Mouse Record Menu"),
      mnuRecordCopy(*this, "mnuRecordCopy", "Copy", &mnuRecordMenu, "Ctrl+C"),
      mnuSelectAll(*this, "mnuSelectAll", "Select All", &mnuRecordMenu, "Ctrl+A"),
      mnuBreakCopy(*this, "mnuBreakCopy", "-", &mnuRecordMenu),
      mnuCopyTitles(*this, "mnuCopyTitles", "Copy with titles", &mnuRecordMenu, "Ctrl+Shift+C"),
      mnuExportCsv(*this, "mnuExportCsv", "Export CSV…", &mnuRecordMenu),
      mnuBreakView(*this, "mnuBreakView", "-", &mnuRecordMenu),
      mnuFilter(*this, "mnuFilter", "Filter", &mnuRecordMenu, "Ctrl+F"),
      mnuSort(*this, "mnuSort", "Sort", &mnuRecordMenu),
      mnuSortUp(*this, "mnuSortUp", "Ascending", &mnuSort, "Ctrl+Up"),
      mnuSortDown(*this, "mnuSortDown", "Descending", &mnuSort, "Ctrl+Down"),
      mnuThenUp(*this, "mnuThenUp", "Ascending, then as before", &mnuSort, "Ctrl+Shift+Up"),
      mnuThenDown(*this, "mnuThenDown", "Descending, then as before", &mnuSort, "Ctrl+Shift+Down"),
      mnuColumns(*this, "mnuColumns", "Columns", &mnuRecordMenu), mnuColumn(columnItems(*this, mnuColumns)),
      mnuBreakColumns(*this, "mnuBreakColumns", "-", &mnuColumns),
      mnuResetColumns(*this, "mnuResetColumns", "Reset Columns", &mnuColumns), pnlFilter(*this, "pnlFilter"),
      lblFilter(*this, "lblFilter", "&Filter:"), txtFilter(*this, "txtFilter"),
      cmdClearFilter(*this, "cmdClearFilter", "Clear"), lblCount(*this, "lblCount", ""),
      cmdUnread(*this, "cmdUnread", ""), pnlUnread(*this, "pnlUnread"), flxUnread(*this, "flxUnread"),
      mnuUnreadMenu(*this, "mnuUnreadMenu", "Unread Files"),
      mnuUnreadCopy(*this, "mnuUnreadCopy", "Copy", &mnuUnreadMenu, "Ctrl+C"),
      mnuUnreadSelectAll(*this, "mnuUnreadSelectAll", "Select All", &mnuUnreadMenu, "Ctrl+A"),
      pnlReading(*this, "pnlReading"), lblReading(*this, "lblReading", ""), gauReading(*this, "gauReading"),
      cmdStopReading(*this, "cmdStopReading", "&Stop"), discovery_(owner, table) {
    width = designWidth;
    height = designHeight;
    cmdExit.width = 1500;
    flxJobList.setFormat(jobColumnsFormat());

    const std::initializer_list<Control*> tabOrder{&flxJobList, &flxUnread, &cmdChangeJob, &cmdUnread,
        &cmdExit, &txtFilter, &cmdClearFilter, &cmdStopReading};
    int next = 0;
    for (Control* control : tabOrder)
        control->tabIndex = next++;
    flxJobList.helpContextId = helpTopics.first;
    cmdChangeJob.helpContextId = helpTopics.first + 1;
    txtFilter.helpContextId = helpTopics.last;
    cmdExit.helpContextId = helpTopics.firstShared;
    cmdChangeJob.isDefault = true;
    cmdExit.isCancel = true;
    cmdClearFilter.enabled = false;
    txtFilter.toolTip = "Shows the jobs that hold every word in some column. surveyor:smith looks in the "
                        "column whose title begins so, \"old weir\" for words that stand together";
    cmdUnread.toolTip = "Shows which files, and why";
    cmdUnread.visible = false;
    pnlUnread.visible = false;
    flxUnread.setFormat("<File|<Reason");
    pnlReading.visible = false;

    connectGrid();
    connectButtons();
    connectMenus();
    connectFilter();
    connectUnread();
    connectWindow();
    openHelpOnF1([this] { return programFolder; });
    followMouse({&cmdChangeJob, &cmdExit, &flxJobList, &txtFilter});
}

void frmJobList::Form_Setup(const std::string& helpSource) {
    run("Form_Setup", [&] {
        // A window that was shown early does not outlive a set-up that fails.
        struct Closing {
            frmJobList& form;
            bool isComplete = false;
            ~Closing() {
                if (!isComplete)
                    form.unload();
            }
        } closing{*this};

        setUpKeysAndHelp(helpTopics, helpSource);
        fitGrid();
        stretchLastColumn();
        flxJobList.setFormat(flxJobList.format() + "|");
        dateColumnWidth_ = flxJobList.column(dateColumn()).width;
        sortAscending_ = true;

        CompileListOfJobs();
        if (leaving_)
            return;
        if (table.jobCount > 0) {
            ListJobs();
            restoreColumns();
            flxJobList.topRow = 1;
            flxJobList.leftColumn = 0;
            ButtonJobName();
        }
        showCount();
        jobChanged = false;
        setUp_ = true;
        flxJobList.setFocus(); // a window that was shown early had it elsewhere
        closing.isComplete = true;
        showAsSetUp();
    });
}

void frmJobList::fitGrid() {
    flxJobList.width = width - gridMargin;
}

// Blanks behind the last title widen its column until the columns fill the grid.
void frmJobList::stretchLastColumn() {
    GeneralProcedures& genProcs = component().genProcs();
    double earlier = -1;
    double total = genProcs.GridColumnsWidth(flxJobList, true);
    for (int i = 0; flxJobList.width > total && total > earlier && i < mostBlanks; ++i) {
        flxJobList.setFormat(flxJobList.format() + " ");
        earlier = total;
        total = genProcs.GridColumnsWidth(flxJobList, false);
    }
}

void frmJobList::CompileListOfJobs() {
    discovery_.thisJob = thisJob;
    discovery_.programFolder = programFolder;
    discovery_.settingsFile = settingsFile;
    discovery_.setCaption = [this](const std::string& text) { caption = text; };
    discovery_.goOn = [this](std::size_t done, std::size_t total) { return readingGoesOn(done, total); };
    readingSince_ = std::chrono::steady_clock::now();
    reading_ = true;
    discovery_.CompileListOfJobs();
    reading_ = false;
    showReading(false);
}

bool frmJobList::readingGoesOn(std::size_t done, std::size_t total) {
    const auto now = std::chrono::steady_clock::now();
    if (now >= nextTurn_ && now - readingSince_ >= patience) {
        nextTurn_ = now + turn;
        lblReading.caption = "Reading file " + std::to_string(done + 1) + " of " + std::to_string(total);
        gauReading.floodPercent = std::int16_t(done * 100 / total);
        if (!isShown()) {
            showReading(true);
            showEarly();
        }
        component().desktop().doEvents();
    }
    return !readingStopped_;
}

void frmJobList::showReading(bool reading) {
    pnlReading.visible = reading;
    pnlFilter.visible = !reading;
    flxJobList.enabled = !reading;
    cmdChangeJob.enabled = !reading;
}

void frmJobList::ListJobs() {
    run("ListJobs", [&] {
        flxJobList.clearRows();
        std::string line;
        for (std::int32_t row = 1; row <= table.jobCount; ++row) {
            const JobRow& job = table.jobList[std::size_t(row) - 1];
            const ShownDate date = [&] {
                try {
                    return shownDate(job[jobcolumn::CreateDate - 1]);
                } catch (const Error& error) {
                    throw Error(error.number(), "Job '" + job[0] + "': " + error.description());
                }
            }();
            line.clear();
            for (std::int32_t column = 1; column <= std::int32_t(jobColumnCount); ++column) {
                const std::string given = column == jobcolumn::Job          ? jobText(job[0], showExt)
                                          : column == jobcolumn::CreateDate ? date.text
                                                                            : std::string();
                std::string text =
                    ColumnItem(row, column, jobColumns()[std::size_t(column) - 1].limit, given);
                // A cell is one line, and a tab would begin the next one.
                std::ranges::replace_if(
                    text, [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
                line.append(text).append(1, '\t');
            }
            flxJobList.addRow(line + std::to_string(date.key));
            if (!currentJobFile.empty() && job[0] == currentJobFile)
                flxJobList.rowMark = RowMark{row, "The current job"};
        }
        flxJobList.setCurrentCell(1, 0);
    });
}

std::string frmJobList::ColumnItem(
    std::int32_t row, std::int32_t column, std::int32_t limit, const std::string& text) {
    return run(
        "ColumnItem",
        [&] {
            std::string shown = text;
            if (text::isBlank(text)) {
                const std::string& stored =
                    table.jobList.at(std::size_t(row) - 1).at(std::size_t(column) - 1);
                shown =
                    column == jobcolumn::CoordSystem ? coordSystemText(stored) : limitedText(stored, limit);
            }
            const Grid::Column& shownIn = flxJobList.column(column - 1);
            const double wanted = textWidthUpTo(
                component().desktop(), font, shown, std::max(shownIn.width, flxJobList.width.get()));
            if (wanted > shownIn.width)
                flxJobList.setColumnWidth(
                    column - 1, wanted > flxJobList.width ? flxJobList.width - columnMargin : wanted);
            return shown;
        },
        "Function");
}

void frmJobList::ButtonJobName() {
    run("ButtonJobName", [&] {
        const std::int32_t row = flxJobList.selection().row;
        if (row == 0)
            return; // no job is shown
        const std::string job = flxJobList.text(row, jobcolumn::Job - 1);
        cmdChangeJob.caption = "Change to job '" + component().strUtil().CaptionText(job) + "'";
        if (!setUp_) {
            cmdChangeJob.enabled = false;
            return;
        }
        const std::string file = fileOfRow(row);
        GetJobnameParts(component(), *thisJob, file);
        cmdChangeJob.enabled = currentJobFile != file;
    });
}

std::string frmJobList::fileOfRow(std::int32_t row) const {
    return row == 0 ? std::string() : table.jobList.at(std::size_t(flxJobList.rowNumber(row)) - 1)[0];
}

void frmJobList::ChangeToJob() {
    run("ChangeToJob", [&] {
        rememberColumns();
        jobChanged = true;
        hide();
        unload();
    });
}

void frmJobList::leave() {
    if (reading_) {
        readingStopped_ = true;
        leaving_ = true;
        return;
    }
    rememberColumns();
    discardList();
    unload();
}

void frmJobList::discardList() {
    flxJobList.setFormat("");
    flxJobList.clearRows();
    table.jobList.clear();
    table.jobCount = 0;
}

} // namespace genutil
