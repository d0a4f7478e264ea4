#include "joblist/column_layout.h"
#include "joblist/frm_job_list.h"
#include "joblist/job_cells.h"
#include "joblist/job_names.h"
#include "joblist/job_text.h"
#include "joblist/text_widths.h"

#include <algorithm>
#include <utility>

// What the user does with the list.
namespace genutil {
namespace {

constexpr const char* layoutKey = "JobListColumns";

std::string counted(std::size_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

} // namespace

void frmJobList::connectGrid() {
    const std::initializer_list<std::pair<Event<>*, const char*>> moves{{&flxJobList.click, "Click"},
        {&flxJobList.enterCell, "EnterCell"}, {&flxJobList.rowColumnChange, "RowColChange"}};
    for (const auto& [event, name] : moves)
        on(*event, flxJobList.name() + "_" + name, [this] {
            if (setUp_)
                ButtonJobName();
        });
    on(flxJobList.mouseDown, "flxJobList_MouseDown", [this](const GridPress& press) { gridPressed(press); });
    on(flxJobList.doubleClick, "flxJobList_DblClick", [this] { gridDoubleClicked(); });
    on(flxJobList.fitColumn, "flxJobList_FitColumn", [this](std::int32_t column) { fitJobColumn(column); });
    on(flxJobList.layoutChange, "flxJobList_LayoutChange", [this] {
        columnsChanged_ = true;
        showColumnTicks();
    });
}

void frmJobList::connectButtons() {
    on(cmdChangeJob.click, "cmdChangeJob_Click", [this] { ChangeToJob(); });
    on(cmdExit.click, "cmdExit_Click", [this] { leave(); });
    on(cmdStopReading.click, "cmdStopReading_Click", [this] { readingStopped_ = true; });
}

void frmJobList::connectMenus() {
    on(mnuRecordCopy.click, "mnuRecordCopy_Click", [this] { ClipboardCopyCut(); });
    on(mnuSelectAll.click, "mnuSelectAll_Click", [this] { SelectAll(); });
    on(mnuCopyTitles.click, "mnuCopyTitles_Click", [this] { CopyWithTitles(); });
    on(mnuExportCsv.click, "mnuExportCsv_Click", [this] { ExportCsv(); });
    on(mnuFilter.click, "mnuFilter_Click", [this] {
        txtFilter.setFocus();
        txtFilter.selectAll();
    });
    on(mnuSortUp.click, "mnuSortUp_Click", [this] { sortByKey(true, false); });
    on(mnuSortDown.click, "mnuSortDown_Click", [this] { sortByKey(false, false); });
    on(mnuThenUp.click, "mnuThenUp_Click", [this] { sortByKey(true, true); });
    on(mnuThenDown.click, "mnuThenDown_Click", [this] { sortByKey(false, true); });
    for (std::size_t i = 0; i < mnuColumn.size(); ++i)
        on(mnuColumn[i].click, mnuColumn[i].name() + "_Click", [this, i] { toggleColumn(i); });
    on(mnuResetColumns.click, "mnuResetColumns_Click", [this] { resetColumns(); });
}

void frmJobList::connectFilter() {
    on(txtFilter.change, "txtFilter_Change", [this] { filterJobs(); });
    on(cmdClearFilter.click, "cmdClearFilter_Click", [this] {
        txtFilter.text = "";
        txtFilter.setFocus();
    });
    on(txtFilter.keyDown, "txtFilter_KeyDown", [this](KeyEvent& event) {
        if (event.code == key::Down) {
            event.code = 0;
            flxJobList.setFocus();
        } else if (event.code == key::Escape && !txtFilter.text.get().empty()) {
            event.code = 0; // the dialog stays open
            txtFilter.text = "";
        }
    });
}

void frmJobList::connectWindow() {
    on(keyDown, "Form_KeyDown", [this](KeyEvent& event) {
        const bool isInFilter = activeControl() == &txtFilter;
        if (event.code == key::Escape && pnlUnread.visible &&
            !(isInFilter && !txtFilter.text.get().empty())) {
            event.code = 0; // the dialog stays open
            showUnread(false);
        }
        if (event.code != key::A || !event.ctrl || isInFilter || activeControl() == &flxUnread)
            return;
        event.code = 0;
        SelectAll();
    });
    on(queryUnload, "Form_QueryUnload", [this](bool& refused, UnloadReason reason) {
        if (reason == UnloadReason::Code)
            return;
        refused = true; // leaving unloads the form itself
        leave();
    });
    on(resize, "Form_Resize", [this] { fitGrid(); });
}

void frmJobList::gridPressed(const GridPress& press) {
    if (press.button == MouseButton::Right && !press.shift && !press.ctrl) {
        showRecordMenu();
        return;
    }
    if (flxJobList.column(dateColumn()).width != dateColumnWidth_)
        flxJobList.setColumnWidth(dateColumn(), dateColumnWidth_);
    if (press.onHeader && press.button == MouseButton::Left) {
        clickedRow_ = 0;
        sortByCurrentColumn();
    } else {
        clickedRow_ = flxJobList.selection().row;
    }
}

void frmJobList::sortByCurrentColumn() {
    sortAscending_ = !sortAscending_;
    const std::int32_t column = flxJobList.selection().column;
    // The clicked column stays current, so that typing and copying go on in what the user sees.
    const auto [key, order] = sortKey(column);
    flxJobList.sort(key, order, sortAscending_);
    flxJobList.sortMark = SortMark{column, sortAscending_};
    flxJobList.secondSortMark = SortMark{};
    flxJobList.topRow = 1;
}

// Leaves the turn of the header's clicks as it is.
void frmJobList::sortByKey(bool ascending, bool keepsOrder) {
    const std::int32_t column = flxJobList.selection().column;
    if (column == dateColumn())
        return;
    const auto [key, order] = sortKey(column);
    flxJobList.sortInPlace(key, order, ascending, keepsOrder);
    const SortMark earlier = flxJobList.sortMark;
    if (!keepsOrder)
        flxJobList.secondSortMark = SortMark{};
    else if (earlier.column != column)
        flxJobList.secondSortMark = earlier;
    flxJobList.sortMark = SortMark{column, ascending};
}

// The column by which the rows are sorted for this one, and how.
std::pair<std::int32_t, GridOrder> frmJobList::sortKey(std::int32_t column) const {
    const bool byDate = column == jobcolumn::CreateDate - 1;
    return {byDate ? dateColumn() : column, byDate ? GridOrder::Numeric : GridOrder::Generic};
}

// Asks whenever the row is not the current job's: the click before has made it thisJob's already.
void frmJobList::gridDoubleClicked() {
    const std::int32_t row = flxJobList.selection().row;
    if (clickedRow_ == 0 || row == 0 || fileOfRow(row) == currentJobFile)
        return;
    const Answer answer = component().desktop().ask(
        {.text = "Change to job '" + flxJobList.text(row, jobcolumn::Job - 1) + "' ?",
            .buttons = Buttons::YesNo,
            .defaultAnswer = Answer::Yes});
    if (answer == Answer::Yes)
        ChangeToJob();
}

void frmJobList::showRecordMenu() {
    const GridRange& selected = flxJobList.selection();
    mnuSelectAll.enabled = true;
    mnuRecordCopy.enabled =
        std::abs(flxJobList.positionOf(selected.endColumn) - flxJobList.positionOf(selected.column)) + 1 >= 2;
    component().desktop().popUpMenu(mnuRecordMenu);
    mnuRecordCopy.enabled = true; // its key copies a single cell, too
}

void frmJobList::SelectAll() {
    run("SelectAll", [&] {
        const std::int32_t last = flxJobList.columnCount() - 1;
        flxJobList.select({flxJobList.rowCount() - 1, flxJobList.columnAt(0), 0, flxJobList.columnAt(last)});
        flxJobList.topRow = 1;
        flxJobList.leftColumn = 0;
    });
}

void frmJobList::ClipboardCopyCut() {
    run("ClipboardCopyCut", [&] {
        const std::string text = selectedText(flxJobList, false);
        component().desktop().clipboard().clear();
        component().desktop().clipboard().setText(text);
    });
}

void frmJobList::CopyWithTitles() {
    run("CopyWithTitles", [&] { component().desktop().clipboard().setText(selectedText(flxJobList, true)); });
}

std::string frmJobList::selectedText(const Grid& grid, bool withTitles) const {
    const GridRange& selected = grid.selection();
    std::vector<std::int32_t> columns = grid.columnsBetween(selected.column, selected.endColumn);
    std::erase(columns, dateColumn());
    const auto [first, last] = std::minmax(selected.row, selected.endRow);
    std::string text;
    const auto append = [&](std::int32_t row) {
        for (const std::int32_t column : columns)
            text.append(column == columns.front() ? "" : "\t").append(grid.text(row, column));
    };
    if (withTitles && first > 0) {
        append(0);
        text += "\r\n";
    }
    for (std::int32_t row = first; row <= last; ++row) {
        append(row);
        text += row == last ? "" : "\r\n";
    }
    return text;
}

void frmJobList::ExportCsv() {
    run("ExportCsv", [&] {
        FileDialog dialog{.title = "Export CSV",
            .filter = "Comma-separated values (*.csv)|*.csv|All files (*.*)|*.*|",
            .flags = dialogflags::OverwritePrompt | dialogflags::HideReadOnly,
            .folder = thisJob->get(job::JobPath),
            .fileName = "jobs.csv"};
        if (!component().desktop().showSave(*this, dialog))
            return;
        std::vector<ListedJob> jobs;
        for (std::int32_t row = 1; row < flxJobList.rowCount(); ++row)
            jobs.push_back({&table.jobList.at(std::size_t(flxJobList.rowNumber(row)) - 1), {}});
        std::vector<std::int32_t> columns;
        const std::int32_t last = flxJobList.columnAt(flxJobList.columnCount() - 1);
        for (const std::int32_t column : flxJobList.columnsBetween(flxJobList.columnAt(0), last))
            if (column != dateColumn())
                columns.push_back(column + 1);
        const std::string text = writeJobs(JobFormat::CommaSeparated, jobs, columns);
        // Spreadsheets take a file without the mark for one in the system's old code page.
        component().files().saveFile(dialog.fileName, [&](const text::ByteSink& sink) {
            sink("\xEF\xBB\xBF");
            sink(text);
        });
    });
}

void frmJobList::filterJobs() {
    if (!setUp_)
        return;
    flxJobList.filter(txtFilter.text.get());
    cmdClearFilter.enabled = flxJobList.rows().isFiltered();
    if (flxJobList.rowCount() == 1 && table.jobCount > 0)
        cmdChangeJob.enabled = false;
    showCount();
}

void frmJobList::showCount() {
    const auto shown = std::size_t(flxJobList.rows().shownCount());
    const auto all = std::size_t(table.jobCount);
    std::string text = flxJobList.rows().isFiltered() ? std::to_string(shown) + " of " : "";
    text += counted(all, "job");
    if (const std::size_t unread = discovery_.leftCount(); unread > 0)
        text += ", stopped before " + counted(unread, "file");
    lblCount.caption = text;
    if (const std::size_t failed = discovery_.unreadFiles().size(); failed > 0)
        cmdUnread.caption = counted(failed, "file") + " could not be &read";
    cmdUnread.visible = !discovery_.unreadFiles().empty();
}

// ---- columns

void frmJobList::fitColumn(Grid& grid, std::int32_t column, double most) {
    double widest = component().desktop().textWidth(font, grid.text(0, column));
    for (std::int32_t row = 1; row < grid.rowCount(); ++row)
        widest = std::max(widest, textWidthUpTo(component().desktop(), font, grid.text(row, column), most));
    grid.setColumnWidth(column, std::min(widest, most));
}

void frmJobList::toggleColumn(std::size_t index) {
    const auto column = std::int32_t(index);
    const bool hide = !flxJobList.column(column).hidden;
    const auto shown = flxJobList.columnsBetween(flxJobList.columnAt(0), dateColumn());
    // The last column that is shown stays.
    if (!hide || shown.size() > 2)
        flxJobList.userHideColumn(column, hide);
    else
        showColumnTicks();
}

void frmJobList::resetColumns() {
    for (std::int32_t column = 0; column < dateColumn(); ++column) {
        flxJobList.setColumnHidden(column, false);
        flxJobList.moveColumn(column, column);
        fitJobColumn(column);
    }
    flxJobList.layoutChange();
}

void frmJobList::showColumnTicks() {
    for (std::size_t i = 0; i < mnuColumn.size(); ++i)
        mnuColumn[i].checked = !flxJobList.column(std::int32_t(i)).hidden;
}

void frmJobList::restoreColumns() {
    if (!settingsFile.empty())
        applyColumnLayout(
            flxJobList, component().genProcs().ReadSetting(settingsFile,
                            component().regInfo().SettingsSection(), layoutKey, "", true, false));
    showColumnTicks();
}

// An arrangement that cannot be stored is no reason to stay in the list: it is reported, and that is all.
void frmJobList::rememberColumns() {
    if (!std::exchange(columnsChanged_, false) || settingsFile.empty())
        return;
    handle("rememberColumns", [&] {
        component().genProcs().WriteSetting(
            settingsFile, component().regInfo().SettingsSection(), layoutKey, columnLayout(flxJobList), 0);
    });
}

} // namespace genutil
