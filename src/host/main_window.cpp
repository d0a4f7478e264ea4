#include "host/main_window.h"

#include "host/gauge_demo.h"
#include "host/job_panel.h"
#include "host/main_form_object.h"
#include "host/plot_view.h"
#include "host/problem_window.h"
#include "host/report_kinds.h"
#include "host/report_model.h"
#include "host/screen_room.h"
#include "host/window_visitor.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

namespace kestal {
namespace {

constexpr const char* placementSection = "MainWindow";
constexpr const char* placementKey = "Geometry";

} // namespace

MainWindow::MainWindow(HostPtr host, ComponentAccess& component)
    : host_(std::move(host)), component_(component), jobs_(host_, component), reports_(new ReportModel(this)),
      sorted_(new QSortFilterProxyModel(this)), status_(new QLabel("Ready")), problems_(new QPushButton) {
    setObjectName("frmMain");
    auto* halves = new QSplitter;
    halves->setChildrenCollapsible(false);
    halves->addWidget(makeReportList());
    halves->addWidget(makeJobSide());
    halves->setSizes({440, 520});
    setCentralWidget(halves);
    makeMenus();
    status_->setTextFormat(Qt::PlainText);
    statusBar()->addWidget(status_, 1);
    problems_->setObjectName("cmdProblems");
    problems_->setFlat(true);
    problems_->hide();
    connect(problems_, &QPushButton::clicked, this, [this] { showProblems(); });
    statusBar()->addPermanentWidget(problems_);

    host_->showProblem = [this](const QString& problem) { status_->setText(problem.simplified()); };
    host_->instantHelpChanged = [this](bool on) { mnuHelpInstantHelp_->setChecked(on); };
    host_->marks.changed = [this](Mark mark) { takeMark(mark); };
    restorePlacement();
    mnuHelpInstantHelp_->setChecked(host_->instantHelpOn);
    openFolder(host_->paths.samples.isEmpty() ? QDir::homePath() : host_->paths.samples);
    jobs_.changed = [this] { showCurrentJob(); };
    showCurrentJob();
    jobs_.reopenLast();
    reportView_->setFocus();
}

MainWindow::~MainWindow() {
    host_->showProblem = nullptr;
    host_->instantHelpChanged = nullptr;
    host_->marks.changed = nullptr;
    host_->keepMarks();
}

void MainWindow::open() {
    if (truthOf(host_->genPrefs->value("StartMaximized")))
        showMaximized();
    else
        showNormal(); // also where the last session ended maximised
}

void MainWindow::guarded(const std::function<void()>& body) {
    try {
        body();
    } catch (const std::exception& error) {
        host_->report(error.what());
    }
}

QWidget* MainWindow::makeReportList() {
    auto* list = new QWidget;
    auto* layout = new QVBoxLayout(list);
    layout->setContentsMargins(8, 8, 4, 8);
    auto* folderRow = new QHBoxLayout;
    auto* label = new QLabel("F&older:");
    folderEdit_ = new QLineEdit;
    folderEdit_->setObjectName("txtFolder");
    folderEdit_->setAccessibleName("Folder");
    label->setBuddy(folderEdit_);
    auto* browse = new QPushButton("&Browse...");
    browse->setObjectName("cmdBrowse");
    folderRow->addWidget(label);
    folderRow->addWidget(folderEdit_, 1);
    folderRow->addWidget(browse);
    connect(folderEdit_, &QLineEdit::returnPressed, this, [this] { takeFolder(folderEdit_->text()); });
    connect(browse, &QPushButton::clicked, this, [this] { chooseFolder(); });

    sorted_->setSourceModel(reports_);
    sorted_->setSortRole(ReportModel::SortRole);
    sorted_->setSortCaseSensitivity(Qt::CaseInsensitive);
    reportView_ = new QTreeView;
    reportView_->setObjectName("lstReports");
    reportView_->setAccessibleName("Reports");
    reportView_->setModel(sorted_);
    reportView_->setRootIsDecorated(false);
    reportView_->setUniformRowHeights(true);
    reportView_->setAlternatingRowColors(true);
    reportView_->setSortingEnabled(true);
    // The names take what the other columns leave.
    reportView_->header()->setStretchLastSection(false);
    reportView_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    reportView_->header()->setSectionResizeMode(ReportModel::Name, QHeaderView::Stretch);
    reportView_->sortByColumn(ReportModel::Name, Qt::AscendingOrder);
    connect(reportView_, &QTreeView::activated, this, [this] { openCurrentReport(); });
    noReports_ = new QLabel("This folder has no reports.");
    noReports_->setAlignment(Qt::AlignCenter);
    noReports_->setEnabled(false);

    layout->addLayout(folderRow);
    layout->addWidget(reportView_, 1);
    layout->addWidget(noReports_);
    return list;
}

QWidget* MainWindow::makeJobSide() {
    auto* picture = new QFrame;
    picture->setObjectName("picPlot");
    picture->setFrameShape(QFrame::StyledPanel);
    plot_ = new PlotView(host_->marks);
    auto* layout = new QVBoxLayout(picture);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(plot_);
    auto* details = new QFrame;
    details->setFrameShape(QFrame::StyledPanel);
    jobPanel_ = new JobPanel;
    auto* detailsLayout = new QVBoxLayout(details);
    detailsLayout->setContentsMargins(0, 0, 0, 0);
    detailsLayout->addWidget(jobPanel_);
    auto* side = new QSplitter(Qt::Vertical);
    side->setChildrenCollapsible(false);
    side->addWidget(picture);
    side->addWidget(details);
    side->setSizes({360, 200});
    side->setMinimumWidth(160);
    return side;
}

void MainWindow::openFolder(const QString& folder) {
    const QFileInfo info(folder);
    if (!info.isDir() || !info.isReadable()) {
        folderEdit_->setText(QDir::toNativeSeparators(folder_));
        host_->report(QString("The folder '%1' does not exist or cannot be read.").arg(folder));
        return;
    }
    folder_ = info.absoluteFilePath();
    folderEdit_->setText(QDir::toNativeSeparators(folder_));
    const QString current = reportView_->currentIndex().siblingAtColumn(ReportModel::Name).data().toString();
    reports_->setFolder(folder_);
    noReports_->setVisible(reports_->rowCount() == 0);
    // The same report stays chosen; else the first is.
    const auto same = sorted_->match(sorted_->index(0, ReportModel::Name), Qt::DisplayRole, current, 1,
        Qt::MatchFixedString | Qt::MatchCaseSensitive);
    reportView_->setCurrentIndex(same.isEmpty() ? sorted_->index(0, 0) : same.first());
}

void MainWindow::openReport(const QString& file) {
    guarded([&] {
        const ReportKind& kind = reportKindOf(QFileInfo(file).fileName());
        component_.viewFile(file.toStdString(), kind.viewMode, false);
    });
}

void MainWindow::openCurrentReport() {
    const QModelIndex current = sorted_->mapToSource(reportView_->currentIndex());
    if (current.isValid())
        openReport(reports_->path(current.row()));
}

void MainWindow::chooseReport() {
    const QString file = QFileDialog::getOpenFileName(this, "Open report", folder_);
    if (!file.isEmpty())
        openReport(file);
}

void MainWindow::chooseFolder() {
    const QString folder = QFileDialog::getExistingDirectory(this, "Choose folder", folder_);
    if (!folder.isEmpty())
        takeFolder(folder);
}

// The folder that the user works in is also where jobs are looked for.
void MainWindow::takeFolder(const QString& folder) {
    openFolder(folder);
    if (folder_ == QFileInfo(folder).absoluteFilePath())
        host_->setDataPath(folder_);
}

void MainWindow::openJob(const QString& file) {
    guarded([&] { jobs_.open(file); });
}

void MainWindow::createJob() {
    QString file = QFileDialog::getSaveFileName(this, "New job", QString::fromStdString(host_->dataPath()),
        "Jobs (*.gdb *.mdb)", nullptr, QFileDialog::DontConfirmOverwrite);
    if (file.isEmpty())
        return;
    if (QFileInfo(file).suffix().isEmpty())
        file += ".gdb";
    jobs_.create(file);
}

void MainWindow::listJobs() {
    guarded([this] {
        // Dialogs cover the plot. Here it shares the window with the list of reports, and a list of jobs
        // needs the room of both.
        const auto mainForm = makeMainFormObject(host_, *this, *centralWidget());
        jobs_.chooseFromList(mainForm.get());
    });
    const std::size_t count = host_->readingProblems.size();
    const QString text = count == 1 ? QString("1 job file could not be read")
                                    : QString("%1 job files could not be read").arg(count);
    problems_->setText(text);
    problems_->setVisible(count > 0);
}

void MainWindow::editLsOptions(std::int16_t mode, std::int16_t dataMode) {
    guarded([&] { component_.editLsOptions(mode, dataMode, jobs_.current()); });
}

void MainWindow::editPointSave() {
    guarded([&] { component_.editPointSave(jobs_.current()); });
}

void MainWindow::editPreferences() {
    guarded([this] {
        const auto mainForm = makeMainFormObject(host_, *this, *centralWidget());
        component_.editPreferences(jobs_.current(), mainForm.get());
    });
}

void MainWindow::editDisplay() {
    guarded([this] {
        const auto mainForm = makeMainFormObject(host_, *this, *centralWidget());
        component_.editDisplay(jobs_.current(), mainForm.get());
    });
}

void MainWindow::showHistory() {
    guarded([this] { component_.showHistory(); });
}

// Several marks may change at once; what depends on them is done when they all have.
void MainWindow::takeMark(Mark mark) {
    if (mark != Mark::Count)
        markActions_[static_cast<int>(mark)]->setChecked(host_->marks.isSet(mark));
    if (std::exchange(hasNewMarks_, true))
        return;
    QTimer::singleShot(0, this, [this] {
        hasNewMarks_ = false;
        plot_->marksChanged();
        host_->keepMarks();
    });
}

void MainWindow::showCurrentJob() {
    const CurrentJob& job = jobs_.current();
    jobPanel_->showJob(job);
    plot_->showJob(job);
    for (QAction* command : jobOptions_ + QList{closeJob_})
        command->setEnabled(job.isOpen());
    setWindowTitle(job.isOpen() ? QString::fromStdString(job.job->text("JobName")) + " - Kestal" : "Kestal");
}

void MainWindow::showProblems() {
    ProblemWindow window(host_->readingProblems, this);
    window.exec();
}

void MainWindow::showGauge() {
    QAction* const command = qobject_cast<QAction*>(sender());
    if (command)
        command->setEnabled(false); // the demonstration lets events run
    const auto enable = qScopeGuard([command] {
        if (command)
            command->setEnabled(true);
    });
    runGaugeDemo(component_, 5);
}

void MainWindow::showAbout() {
    QMessageBox::about(this, "About Kestal",
        "Kestal " + QString::fromStdString(host_->prog->text("VersionText")) +
            "\n\nReference host of the component \"Kestal general utilities\".");
}

void MainWindow::restorePlacement() {
    std::string geometry;
    try {
        geometry = readSetting(host_->paths.settings.toStdString(), placementSection, placementKey, "");
    } catch (const std::exception& error) {
        host_->log.write(QString("The placement of the main window is not used: %1").arg(error.what()));
    }
    if (!restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(geometry))))
        resize(startSize(*this, {960, 620}));
}

// The program ends with its main window; a viewer that stays open keeps both.
void MainWindow::closeEvent(QCloseEvent* event) {
    for (const QPointer<QWidget>& window : visibleWindows()) {
        if (!window || window == this)
            continue;
        // A viewer takes its own window away, so only its being visible tells whether it has refused.
        window->close();
        if (window && window->isVisible())
            return event->ignore();
    }
    try {
        writeSetting(host_->paths.settings.toStdString(), placementSection, placementKey,
            saveGeometry().toBase64().toStdString());
    } catch (const std::exception& error) {
        host_->log.write(QString("The placement of the main window is not stored: %1").arg(error.what()));
    }
    event->accept();
}

} // namespace kestal
