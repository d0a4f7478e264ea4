#include "host/help_window.h"
#include "host/main_window.h"

#include <QMenuBar>
#include <QTreeView>

// The menus of the main window.
namespace kestal {
namespace {

constexpr int mainTopic = 100;

} // namespace

QAction* MainWindow::addCommand(
    QMenu* menu, const QString& text, const QKeySequence& key, std::function<void()> body) {
    QAction* action = menu->addAction(text);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, [this, body = std::move(body)] { guarded(body); });
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
    addMarks(view);
    QMenu* tools = menuBar()->addMenu("&Tools");
    addLsOptionCommands(tools);
    tools->addSeparator();
    addCommand(tools, "Pre&ferences...", Qt::CTRL | Qt::Key_Comma, [this] {
        editPreferences();
    })->setMenuRole(QAction::PreferencesRole);
    tools->addSeparator();
    addCommand(tools, "&Progress gauge demonstration", {}, [this] { showGauge(); });
    QMenu* help = menuBar()->addMenu("&Help");
    mnuHelpInstantHelp_ = help->addAction("&Instant help");
    mnuHelpInstantHelp_->setObjectName("mnuHelpInstantHelp");
    mnuHelpInstantHelp_->setCheckable(true);
    connect(mnuHelpInstantHelp_, &QAction::toggled, this, [this](bool on) {
        if (on != host_->instantHelpOn)
            host_->setInstantHelp(on);
    });
    addCommand(help, "Help &topics", QKeySequence(Qt::Key_F1), [this] { showHelpWindow(*host_, mainTopic); });
    addCommand(help, "&History", {}, [this] { showHistory(); });
    help->addSeparator();
    addCommand(help, "&About Kestal", {}, [this] { showAbout(); });
}

// What the plot shows: an item for each mark, which shows the mark and sets it.
void MainWindow::addMarks(QMenu* view) {
    view->addSeparator();
    QMenu* const points = view->addMenu("P&oints");
    QMenu* const lines = view->addMenu("&Lines");
    for (const ViewMark& each : viewMarks()) {
        const auto mark = static_cast<Mark>(markActions_.size());
        QMenu* const menu = each.group == MarkGroup::Points  ? points
                            : each.group == MarkGroup::Lines ? lines
                                                             : view;
        QAction* const action = menu->addAction(each.caption);
        action->setObjectName(each.name);
        action->setCheckable(true);
        action->setChecked(host_->marks.isSet(mark));
        connect(action, &QAction::triggered, this, [this, mark, action](bool on) {
            host_->marks.choose(mark, on);
            action->setChecked(host_->marks.isSet(mark)); // a rule may have set it back
        });
        markActions_ += action;
    }
    view->addSeparator();
    addCommand(view, "&Display settings...", Qt::CTRL | Qt::Key_D, [this] { editDisplay(); });
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

} // namespace kestal
