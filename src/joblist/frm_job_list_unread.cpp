#include "joblist/frm_job_list.h"

#include <algorithm>

// The files that could not be read, below the jobs. They are no jobs, and so no rows of theirs.
namespace genutil {
namespace {

std::string onOneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
    return text;
}

} // namespace

void frmJobList::connectUnread() {
    on(cmdUnread.click, "cmdUnread_Click", [this] { showUnread(!pnlUnread.visible); });
    on(flxUnread.mouseDown, "flxUnread_MouseDown", [this](const GridPress& press) { unreadPressed(press); });
    on(flxUnread.fitColumn, "flxUnread_FitColumn", [this](std::int32_t column) { fitUnread(column); });
    on(mnuUnreadCopy.click, "mnuUnreadCopy_Click", [this] { copyUnread(); });
    on(mnuUnreadSelectAll.click, "mnuUnreadSelectAll_Click", [this] {
        flxUnread.select({1, 0, flxUnread.rowCount() - 1, 1});
    });
}

void frmJobList::showUnread(bool shown) {
    if (shown && flxUnread.rowCount() == 1)
        listUnread();
    const bool wasInside = activeControl() == &flxUnread;
    pnlUnread.visible = shown;
    if (shown)
        flxUnread.setFocus();
    else if (wasInside)
        flxJobList.setFocus();
}

void frmJobList::listUnread() {
    for (const UnreadFile& file : discovery_.unreadFiles())
        flxUnread.addRow(onOneLine(file.name) + '\t' + onOneLine(file.reason));
    fitUnread(0);
    fitUnread(1);
    flxUnread.setCurrentCell(1, 0);
}

// A name leaves room for the reason; a reason that is longer than the window is scrolled to.
void frmJobList::fitUnread(std::int32_t column) {
    fitColumn(flxUnread, column, flxJobList.width * (column == 0 ? 0.3 : 3));
}

// A title sorts, in ascending order first.
void frmJobList::unreadPressed(const GridPress& press) {
    if (press.button == MouseButton::Right) {
        component().desktop().popUpMenu(mnuUnreadMenu);
    } else if (press.onHeader && press.button == MouseButton::Left) {
        const SortMark mark = flxUnread.sortMark;
        const std::int32_t column = flxUnread.selection().column;
        const bool ascending = mark.column != column || !mark.ascending;
        flxUnread.sort(column, GridOrder::Generic, ascending);
        flxUnread.sortMark = SortMark{column, ascending};
    }
}

void frmJobList::copyUnread() {
    component().desktop().clipboard().setText(selectedText(flxUnread, false));
}

} // namespace genutil
