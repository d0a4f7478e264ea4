#include "host/problem_window.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace kestal {
namespace {

// A tool tip takes what looks like markup as markup.
QString tip(const QString& text) {
    return "<qt>" + text.toHtmlEscaped() + "</qt>";
}

void copyLines(const QTreeWidget& list) {
    QStringList lines;
    const bool all = list.selectedItems().isEmpty();
    for (int i = 0; i < list.topLevelItemCount(); ++i)
        if (const QTreeWidgetItem* item = list.topLevelItem(i); all || item->isSelected())
            lines += item->text(0) + '\t' + item->text(1);
    QApplication::clipboard()->setText(lines.join('\n'));
}

} // namespace

ProblemWindow::ProblemWindow(const std::vector<ReadingProblem>& problems, QWidget* parent) : QDialog(parent) {
    setObjectName("frmProblems");
    setWindowTitle("Problems");
    auto* list = new QTreeWidget;
    list->setObjectName("lstProblems");
    list->setAccessibleName("Job files that could not be read");
    list->setHeaderLabels({"File", "Reason"});
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAlternatingRowColors(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    for (const ReadingProblem& problem : problems) {
        auto* item = new QTreeWidgetItem(list, {problem.file, problem.reason.simplified()});
        item->setToolTip(0, tip(problem.file));
        item->setToolTip(1, tip(problem.reason));
    }
    list->setSortingEnabled(true);
    list->sortByColumn(0, Qt::AscendingOrder);
    constexpr int widestName = 260;
    list->resizeColumnToContents(0);
    list->setColumnWidth(0, std::min(list->columnWidth(0), widestName));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    auto* copy = buttons->addButton("&Copy", QDialogButtonBox::ActionRole);
    copy->setAutoDefault(false);
    connect(copy, &QPushButton::clicked, list, [list] { copyLines(*list); });
    connect(new QShortcut(QKeySequence::Copy, list, nullptr, nullptr, Qt::WidgetShortcut),
        &QShortcut::activated, list, [list] { copyLines(*list); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(problems.empty() ? "All job files of the latest list could be read."
                                                  : "These job files could not be read and are not listed:"));
    layout->addWidget(list, 1);
    layout->addWidget(buttons);
    resize(720, 360);
}

} // namespace kestal
