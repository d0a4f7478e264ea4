// What the user waits for in a list of as many jobs as there can be: filling the grid, sorting, a key press
// in the filter, copying all of it. Prints the median milliseconds of some rounds. Needs no screen:
// QT_QPA_PLATFORM=offscreen.

#include "joblist/frm_job_list.h"
#include "platform/qt/qt_desktop.h"
#include "support/job_world.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

using namespace genutil;

namespace {

constexpr int rounds = 7;
constexpr std::int32_t pointsColumn = 20, dateColumn = 27;

double medianOf(const std::function<void()>& act) {
    std::vector<double> milliseconds;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        act();
        milliseconds.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::ranges::sort(milliseconds);
    return milliseconds[rounds / 2];
}

void print(const char* what, double milliseconds) {
    std::printf("%-44s %8.1f ms\n", what, milliseconds);
}

// As jobs of some years are: their own names, descriptions and numbers, few surveyors and datums.
JobRow jobRow(int number) {
    const auto n = std::uint32_t(number) * 2654435761u;
    const auto text = [](std::uint32_t value) { return std::to_string(value); };
    const char* const surveyors[] = {"J. Carter", "M. Okafor", "L. Nyström", "A. Brandt"};
    const char* const works[] = {"Boundary survey of lot ", "Highway realignment, section ",
        "Subdivision, stage ", "Monitoring of the dam, epoch ", "As-built survey of bridge "};
    JobRow row;
    row[0] = "job" + text(n % 100'000) + (n % 3 ? ".mdb" : ".gdb");
    row[1] = text(n % 28 + 1) + "/" + text(n % 12 + 1) + "/" + text(1990 + n % 36);
    row[2] = surveyors[n % std::size(surveyors)];
    row[3] = "R-" + text(n % 50'000);
    row[4] = works[n % std::size(works)] + text(n % 9000) + " for client " + text(n % 700);
    row[5] = text(n % 3);
    row[6] = "6378137";
    row[7] = "Transverse Mercator";
    row[8] = row[12] = "GDA2020";
    row[9] = "GRS80";
    row[11] = text(n % 60);
    row[16] = "Bicubic";
    row[17] = "ausgeoid" + text(n % 20) + ".grd";
    row[18] = row[19] = "3";
    row[20] = text(n % 20'000);
    row[21] = text(n % 300);
    row[22] = text(300'000 + n % 400'000);
    row[23] = text(6'000'000 + n % 900'000);
    row[24] = text(n % 30);
    row[25] = text(n % 9);
    row[26] = "5.01";
    return row;
}

std::shared_ptr<frmJobList> makeForm(Component& component) {
    auto form = std::make_shared<frmJobList>(component);
    form->flxJobList.setFormat(form->flxJobList.format() + "|"); // the date keys' column
    for (int row = 0; row < JobTable::maximum; ++row)
        form->table.jobList.push_back(jobRow(row));
    form->table.jobCount = JobTable::maximum;
    return form;
}

double fillingWith(Component& component) {
    std::vector<std::shared_ptr<frmJobList>> forms;
    for (int round = 0; round < rounds; ++round)
        forms.push_back(makeForm(component));
    return medianOf([&, next = 0u]() mutable { forms[next++]->ListJobs(); });
}

} // namespace

int main() {
    fake::JobHost host;
    fake::FakeFiles files;
    const auto desktop = makeQtDesktop();
    Component component(*desktop, files, host);
    fake::ScriptedDesktop unmeasured; // every character is as wide as every other
    Component withoutMeasuring(unmeasured, files, host);

    print("fill", fillingWith(component));
    print("  when measuring a text costs nothing", fillingWith(withoutMeasuring));

    const auto form = makeForm(component);
    form->ListJobs();
    Grid& grid = form->flxJobList;
    print("  measuring the text of every cell anew", medianOf([&] {
        for (std::int32_t row = 1; row < grid.rowCount(); ++row)
            for (std::int32_t column = 0; column < grid.columnCount(); ++column)
                desktop->textWidth(grid.font, grid.text(row, column));
    }));
    const auto sorting = [&](const char* what, std::int32_t column, GridOrder order) {
        print(what, medianOf([&, isAscending = false]() mutable {
            grid.sort(column, order, isAscending = !isAscending);
        }));
    };
    sorting("sort by file names", 0, GridOrder::Generic);
    sorting("sort by descriptions", 4, GridOrder::Generic);
    sorting("sort by numbers of points", pointsColumn, GridOrder::Generic);
    sorting("sort by dates", dateColumn, GridOrder::Numeric);
    print("first key press in the filter", medianOf([&] {
        grid.filter("");
        grid.addRow("one more"); // all texts are prepared anew
        grid.filter("d");
    }));
    print("further key press in the filter", medianOf([&] { grid.filter("dam epoch"); }));
    grid.filter("");
    print("select all and copy", medianOf([&] {
        form->SelectAll();
        form->ClipboardCopyCut();
    }));
}
