#include "host/main_window.h"

#include "host/gauge_demo.h"
#include "host/help_window.h"
#include "host/job_panel.h"
#include "host/main_form_object.h"
#include "host/problem_window.h"
#include "host/report_kinds.h"
#include "host/report_model.h"
#include "host/window_visitor.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QSettings>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QStatusBar>
#include <QTreeView>
#include <QVBoxLayout>

namespace kestal {
namespace {

constexpr int mainTopic = 100;
constexpr const char* placementGroup = "MainWindow";

// Runs a command of the user; what fails in it is put before the user.
void guarded(Host& host, const std::function<void()>& body) {
    try {
        body();
    } catch (const std::exception& error) {
        host.report(error.what());
    }
}

} // namespace

MainWindow::MainWindow(HostPtr host, ComponentAccess& component)
    : host_(std::move(host)), component_(component), jobs_(host_, component), reports_(new ReportModel(this)),
      sorted_(new QSortFilterProxyModel(this)), status_(new QLabel("Ready")), problems_(new QPushButton) {
    setObjectName("frmMain");
    auto* halves = new QSplitter;
    halves->setChildrenCollapsible(false);
    halves->addWidget(makeReportList());
    halves->addWidget(makePlotArea());
    halves->setSizes({560, 400});
    setCentralWidget(halves);
    makeHelpPanel();
    makeMenus();
    status_->setTextFormat(Qt::PlainText);
    statusBar()->addWidget(status_, 1);
    problems_->setObjectName("cmdProblems");
    problems_->setFlat(true);
    problems_->hide();
    connect(problems_, &QPushButton::clicked, this, [this] { showProblems(); });
    statusBar()->addPermanentWidget(problems_);

    host_->showInstantHelp = [this](const QString& title, const QString& text) {
        helpTitle_->setText(title);
        helpText_->setPlainText(text);
    };
    host_->showProblem = [this](const QString& problem) { status_->setText(problem.simplified()); };
    restorePlacement();
    setInstantHelp(host_->instantHelpOn);
    openFolder(host_->paths.samples.isEmpty() ? QDir::homePath() : host_->paths.samples);
    jobs_.changed = [this] { showCurrentJob(); };
    showCurrentJob();
    jobs_.reopenLast();
    reportView_->setFocus();
}

MainWindow::~MainWindow() {
    host_->showInstantHelp = nullptr;
    host_->showProblem = nullptr;
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

QWidget* MainWindow::makePlotArea() {
    auto* area = new QFrame;
    area->setObjectName("picPlot");
    area->setAccessibleName("Plot");
    area->setFrameShape(QFrame::StyledPanel);
    area->setBackgroundRole(QPalette::Base);
    area->setAutoFillBackground(true);
    jobPanel_ = new JobPanel;
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(jobPanel_);
    area->setMinimumWidth(160);
    return area;
}

void MainWindow::makeHelpPanel() {
    helpPanel_ = new QDockWidget("Instant help", this);
    helpPanel_->setObjectName("pnlInstantHelp");
    helpPanel_->setFeatures(QDockWidget::NoDockWidgetFeatures);
    helpPanel_->setAllowedAreas(Qt::BottomDockWidgetArea);
    auto* contents = new QWidget;
    helpTitle_ = new QLabel;
    helpTitle_->setObjectName("lblHelpTitle");
    helpTitle_->setTextFormat(Qt::PlainText);
    QFont bold = helpTitle_->font();
    bold.setBold(true);
    helpTitle_->setFont(bold);
    helpText_ = new QPlainTextEdit;
    helpText_->setObjectName("txtHelp");
    helpText_->setAccessibleName("Instant help");
    helpText_->setReadOnly(true);
    helpText_->setFrameShape(QFrame::NoFrame);
    helpText_->setTabChangesFocus(true);
    helpText_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    helpText_->viewport()->setAutoFillBackground(false);
    helpText_->document()->setDocumentMargin(0);
    helpText_->setFixedHeight(helpText_->fontMetrics().lineSpacing() * 6);
    helpPanel_->setTitleBarWidget(new QWidget); // the topic is title enough
    auto* layout = new QVBoxLayout(contents);
    layout->addWidget(helpTitle_);
    layout->addWidget(helpText_);
    helpPanel_->setWidget(contents);
    addDockWidget(Qt::BottomDockWidgetArea, helpPanel_);
}

QAction* MainWindow::addCommand(
    QMenu* menu, const QString& text, const QKeySequence& key, std::function<void()> body) {
    QAction* action = menu->addAction(text);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, [this, body = std::move(body)] { guarded(*host_, body); });
    return action;
}

void MainWindow::makeMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    addCommand(file, "&Open report...", QKeySequence::Open, [this] { chooseReport(); });
    addCommand(file, "Choose &folder...", Qt::CTRL | Qt::SHIFT | Qt::Key_O, [this] { chooseFolder(); });
    file->addSeparator();
    addCommand(file, "&Job list...", Qt::CTRL | Qt::Key_J, [this] { listJobs(); });
    addCommand(file, "&New job...", QKeySequence::New, [this] { createJob(); });
    closeJob_ = addCommand(file, "&Close job", {}, [this] { jobs_.close(); });
    file->addSeparator();
    addCommand(file, "E&xit", Qt::CTRL | Qt::Key_Q, [this] { close(); });
    QMenu* view = menuBar()->addMenu("&View");
    addCommand(view, "&Reports", Qt::CTRL | Qt::Key_L, [this] { reportView_->setFocus(); });
    addCommand(view, "Re&fresh", QKeySequence(Qt::Key_F5), [this] { openFolder(folder_); });
    addCommand(view, "&Problems...", {}, [this] { showProblems(); });
    QMenu* tools = menuBar()->addMenu("&Tools");
    addLsOptionCommands(tools);
    tools->addSeparator();
    addCommand(tools, "&Progress gauge demonstration", {}, [this] { showGauge(); });
    QMenu* help = menuBar()->addMenu("&Help");
    mnuHelpInstantHelp_ = help->addAction("&Instant help");
    mnuHelpInstantHelp_->setObjectName("mnuHelpInstantHelp");
    mnuHelpInstantHelp_->setCheckable(true);
    connect(mnuHelpInstantHelp_, &QAction::toggled, this, [this](bool on) { setInstantHelp(on); });
    addCommand(
        help, "Help &topics", QKeySequence(Qt::Key_F1), [this] { showHelpWindow(host_->help, mainTopic); });
    help->addSeparator();
    addCommand(help, "&About Kestal", {}, [this] { showAbout(); });
}

void MainWindow::addLsOptionCommands(QMenu* tools) {
    const auto ofMode = [this](std::int16_t mode, std::int16_t dataMode = 0) {
        return [this, mode, dataMode] { editLsOptions(mode, dataMode); };
    };
    addCommand(tools, "&Least-squares options...", {}, ofMode(ls_modes::Preferences));
    jobOptions_ += addCommand(tools, "Options of this &job...", {}, ofMode(ls_modes::JobAndSet));
    QMenu* pages = tools->addMenu("&Page options");
    jobOptions_ += pages->menuAction();
    for (std::int16_t dataMode = 1; dataMode <= 4; ++dataMode)
        addCommand(pages, QString("Data mode &%1...").arg(dataMode), {}, ofMode(ls_modes::Page, dataMode));
    jobOptions_ += addCommand(tools, "&Traverse header options...", {}, ofMode(ls_modes::Header));
    addCommand(tools, "Point &save options...", {}, [this] { editPointSave(); });
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
    guarded(*host_, [&] {
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
    guarded(*host_, [&] { jobs_.open(file); });
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
    guarded(*host_, [this] {
        // Dialogs cover the plot. Here it shares the window with the list of reports, and a list of jobs
        // needs the room of both.
        const auto mainForm = makeMainFormObject(*this, *centralWidget());
        jobs_.chooseFromList(mainForm.get());
    });
    const std::size_t count = host_->readingProblems.size();
    const QString text = count == 1 ? QString("1 job file could not be read")
                                    : QString("%1 job files could not be read").arg(count);
    problems_->setText(text);
    problems_->setVisible(count > 0);
}

void MainWindow::editLsOptions(std::int16_t mode, std::int16_t dataMode) {
    guarded(*host_, [&] { component_.editLsOptions(mode, dataMode, jobs_.current()); });
}

void MainWindow::editPointSave() {
    guarded(*host_, [&] { component_.editPointSave(jobs_.current()); });
}

void MainWindow::showCurrentJob() {
    const CurrentJob& job = jobs_.current();
    jobPanel_->showJob(job);
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

void MainWindow::setInstantHelp(bool on) {
    host_->instantHelpOn = on;
    mnuHelpInstantHelp_->setChecked(on);
    helpPanel_->setVisible(on);
    if (on && helpTitle_->text().isEmpty())
        host_->showInstantHelp(
            "Instant help", "Move the pointer over a part of a window that was opened from here.");
}

void MainWindow::restorePlacement() {
    QSettings settings(host_->paths.settings, QSettings::IniFormat);
    settings.beginGroup(placementGroup);
    host_->instantHelpOn = settings.value("InstantHelp", false).toBool();
    if (!restoreGeometry(settings.value("Geometry").toByteArray()))
        resize(QSize(960, 620).boundedTo(screen()->availableSize()));
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
    QSettings settings(host_->paths.settings, QSettings::IniFormat);
    settings.beginGroup(placementGroup);
    settings.setValue("Geometry", saveGeometry());
    settings.setValue("InstantHelp", host_->instantHelpOn);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        host_->log.write("The placement of the main window cannot be stored in " + host_->paths.settings);
    event->accept();
}

} // namespace kestal
