#pragma once

#include "host/job_desk.h"

#include <QMainWindow>

#include <functional>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QSortFilterProxyModel;
class QTreeView;

namespace kestal {

class JobPanel;
class PlotView;
class ReportModel;

/// The host's main window: the reports of a folder, the plot and the details of the open job, the
/// instant-help panel. It takes over what the services have to show, and opens the job that was open last.
class MainWindow : public QMainWindow {
public:
    MainWindow(HostPtr host, ComponentAccess& component);
    ~MainWindow() override;

    /// Shows the window, in the size that the preferences want.
    void open();
    void openFolder(const QString& folder);
    void openReport(const QString& file);
    void openJob(const QString& file);
    /// Shows the list of jobs and changes to the one that is chosen.
    void listJobs();
    /// Shows the least-squares options (a mode of ls_modes; of ls_modes::Page the data mode), or what is done
    /// with the points of an adjusted network.
    void editLsOptions(std::int16_t mode, std::int16_t dataMode = 0);
    void editPointSave();
    /// Shows the preferences, and what the plot shows.
    void editPreferences();
    void editDisplay();
    void showHistory();
    QAction* instantHelpAction() const { return mnuHelpInstantHelp_; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeReportList();
    QWidget* makeJobSide();
    void makeMenus();
    void addMarks(QMenu* view);
    /// Runs a command of the user; what fails in it is put before the user.
    void guarded(const std::function<void()>& body);
    QAction* addCommand(
        QMenu* menu, const QString& text, const QKeySequence& key, std::function<void()> body);
    void chooseReport();
    void chooseFolder();
    void takeFolder(const QString& folder);
    void createJob();
    void showCurrentJob();
    void showProblems();
    void openCurrentReport();
    void addLsOptionCommands(QMenu* tools);
    void showGauge();
    void showAbout();
    void takeMark(Mark mark);
    void restorePlacement();

    HostPtr host_;
    ComponentAccess& component_;
    JobDesk jobs_;
    QString folder_;
    ReportModel* reports_ = nullptr;
    QSortFilterProxyModel* sorted_ = nullptr;
    QLabel* status_ = nullptr; // the latest problem
    QLineEdit* folderEdit_ = nullptr;
    QTreeView* reportView_ = nullptr;
    QLabel* noReports_ = nullptr;
    PlotView* plot_ = nullptr;
    JobPanel* jobPanel_ = nullptr;
    QList<QAction*> markActions_; // in the order of Mark
    bool hasNewMarks_ = false;    // that the plot and the settings do not have yet
    QAction* closeJob_ = nullptr;
    QList<QAction*> jobOptions_;      // those that need an open job
    QPushButton* problems_ = nullptr; // how many the latest list of jobs had
    QAction* mnuHelpInstantHelp_ = nullptr;
};

} // namespace kestal
