#pragma once

#include "frame/dialog_form.h"
#include "hostif/controls.h"
#include "hostif/grid.h"
#include "joblist/job_discovery.h"
#include "joblist/job_table.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>

namespace genutil {

// The job list: every job of a folder in one row of a grid, to sort, search, copy and choose from. Lengths
// are twips.
class frmJobList : public DialogForm {
public:
    explicit frmJobList(Component& component);

    // Inputs, set by the loader. The current job's row, if there is one, is in `table` already.
    RecordPtr thisJob;          // its JobPath is the folder; name and extension follow the chosen row
    std::string currentJobFile; // name and extension of the current job; "" when there is none
    bool showExt = false;       // the Job column shows the extensions
    std::string programFolder;
    std::string settingsFile; // where the arrangement of the columns is kept; "": nowhere
    JobTable table;

    // Result: the user accepted a job.
    bool jobChanged = false;

    Grid flxJobList;
    Button cmdChangeJob, cmdExit;
    Panel pnlHelp;
    MenuItem mnuRecordMenu, mnuRecordCopy, mnuSelectAll;
    // What users of lists expect beyond the commands above.
    MenuItem mnuBreakCopy, mnuCopyTitles, mnuExportCsv, mnuBreakView, mnuFilter;
    // Sort by the current column; "then" keeps the order of before among equal texts.
    MenuItem mnuSort, mnuSortUp, mnuSortDown, mnuThenUp, mnuThenDown;
    MenuItem mnuColumns;
    std::deque<MenuItem> mnuColumn; // one for each column: ticked while it is shown
    MenuItem mnuBreakColumns, mnuResetColumns;
    Panel pnlFilter;
    Label lblFilter;
    TextBox txtFilter;
    Button cmdClearFilter;
    Label lblCount;   // "23 jobs"
    Button cmdUnread; // "2 files could not be read": shows which, and hides them again; seen only where there
                      // are any
    Panel pnlUnread;
    Grid flxUnread; // the files and the reasons
    MenuItem mnuUnreadMenu, mnuUnreadCopy, mnuUnreadSelectAll;
    // Shown in place of the filter while jobs are being read.
    Panel pnlReading;
    Label lblReading; // "Reading file 120 of 2000"
    FloodGauge gauReading;
    Button cmdStopReading;

    void Form_Setup(const std::string& helpSource);
    // Reads the folder into the job table. When that takes long, the window shows how far it is.
    void CompileListOfJobs();
    // Fills the grid from the job table.
    void ListJobs();
    // The text that a cell shows: `text` if it is not blank, else the job table's; widens the column to it.
    std::string ColumnItem(
        std::int32_t row, std::int32_t column, std::int32_t limit, const std::string& text);
    // Makes the current row's job the one that can be changed to.
    void ButtonJobName();
    void ChangeToJob();
    void SelectAll();
    // Copies the selected cells as tab-separated text.
    void ClipboardCopyCut();

    void CopyWithTitles();
    // Writes the jobs that are shown to a file of the user's choice.
    void ExportCsv();
    void copyUnread();

private:
    void connectGrid();
    void connectButtons();
    void connectMenus();
    void connectFilter();
    void connectUnread();
    void connectWindow();

    void fitGrid();
    void stretchLastColumn();
    bool readingGoesOn(std::size_t done, std::size_t total);
    void showReading(bool reading);
    // Ends the reading where it is going on, else the dialog.
    void leave();
    void discardList();

    void gridPressed(const GridPress& press);
    void sortByCurrentColumn();
    std::pair<std::int32_t, GridOrder> sortKey(std::int32_t column) const;
    void sortByKey(bool ascending, bool keepsOrder);
    void gridDoubleClicked();
    void showRecordMenu();

    void showUnread(bool shown);
    void listUnread();
    void fitUnread(std::int32_t column);
    void unreadPressed(const GridPress& press);

    void filterJobs();
    void showCount();
    // Makes the column as wide as its texts, at most so wide.
    void fitColumn(Grid& grid, std::int32_t column, double most);
    void fitJobColumn(std::int32_t column) { fitColumn(flxJobList, column, flxJobList.width); }
    void toggleColumn(std::size_t index);
    void resetColumns();
    void showColumnTicks();
    void restoreColumns();
    void rememberColumns();

    // The selected cells, rows joined by CR LF and cells by tabs; the titles first when they are wanted.
    std::string selectedText(const Grid& grid, bool withTitles) const;
    // The file of the job that the row shows; "" for the header.
    std::string fileOfRow(std::int32_t row) const;
    std::int32_t dateColumn() const { return std::int32_t(jobColumnCount); }

    JobDiscovery discovery_;
    bool unreadAscending_ = false; // of the last sort of the unread files
    bool sortAscending_ = true;    // of the last sort by a header
    std::int32_t clickedRow_ = 0;  // of the last press; 0: on the header
    double dateColumnWidth_ = 0;   // as set up
    bool setUp_ = false;           // the list is complete, the user acts on it
    bool reading_ = false;
    bool readingStopped_ = false;
    bool leaving_ = false; // the user left while the jobs were being read
    bool columnsChanged_ = false;
    std::chrono::steady_clock::time_point readingSince_, nextTurn_;
};

} // namespace genutil
