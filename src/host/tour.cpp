#include "host/tour.h"

#include "host/gauge_demo.h"
#include "host/main_window.h"
#include "host/window_visitor.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QHash>
#include <QHeaderView>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPixmap>
#include <QPushButton>
#include <QTableView>
#include <QTabWidget>
#include <QWindow>

#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

namespace kestal {
namespace {

constexpr int paintingTime = 150; // milliseconds
constexpr auto timeLimit = std::chrono::seconds(120);
// A text window has more ink than this below its menu; a blank one has none.
constexpr double leastInk = 0.004;

// Ends the program when the tour takes too long, even from within a call that does not return.
class TimeLimit {
public:
    TimeLimit()
        : watcher_([this] {
              std::unique_lock lock(mutex_);
              if (!ended_.wait_for(lock, timeLimit, [this] { return isOver_; })) {
                  std::fprintf(
                      stderr, "FAILED tour: not finished after %d s\n", static_cast<int>(timeLimit.count()));
                  std::_Exit(EXIT_FAILURE);
              }
          }) {}
    ~TimeLimit() {
        {
            const std::lock_guard lock(mutex_);
            isOver_ = true;
        }
        ended_.notify_all();
        watcher_.join();
    }

private:
    std::mutex mutex_;
    std::condition_variable ended_;
    bool isOver_ = false;
    std::thread watcher_;
};

struct ViewerShot {
    const char* name;
    const char* sample;
    std::int16_t mode;
};

constexpr ViewerShot viewerShots[] = {
    {"viewer-log", "network.log", 25},
    {"viewer-inverse", "inverse.inv", 29},
    {"viewer-points", "points.rep", 22},
    {"viewer-history", "history.txt", 23},
    {"viewer-data", "tilt.sdr", 26},
    {"viewer-summary", "traverse.sum", 1},
    {"viewer-rich", "network_summary.rtf", 25},
};

class Tour {
public:
    Tour(HostPtr host, ComponentAccess& component, const QString& folder)
        : host_(std::move(host)), component_(component), folder_(folder) {}

    bool run();

private:
    void step(const std::string& name, const std::function<void()>& body);
    void save(const std::string& name, QWidget& window, bool mayBeEmpty = false);
    std::string sample(const char* name) const;
    void gauge();
    void viewer(const std::string& name, const std::string& file, std::int16_t mode, bool mayBeEmpty);
    void missingFile();
    void help();
    void ofMenu(const std::string& name, const char* file, const QString& item);
    void instantHelp();
    void jobList(MainWindow& main);
    void problems(MainWindow& main);
    void history(MainWindow& main);
    void dialog(const std::string& name, const std::function<void()>& show);

    HostPtr host_;
    ComponentAccess& component_;
    QDir folder_;
    int failures_ = 0;
};

bool Tour::run() {
    const TimeLimit limit;
    if (!folder_.mkpath("."))
        throw std::runtime_error("the folder " + folder_.path().toStdString() + " cannot be made");
    step("main-window", [&] {
        MainWindow main(host_, component_);
        main.show();
        settle(paintingTime);
        save("main-window", main);
        step("history", [&] { history(main); });
        main.instantHelpAction()->setChecked(true);
        step("instant-help", [&] { instantHelp(); });
        main.instantHelpAction()->setChecked(false);
        dialog("ls-options-1", [&] { main.editLsOptions(1); });
        dialog("point-save-1", [&] { main.editPointSave(); });
        step("main-job", [&] {
            main.openJob(QString::fromStdString(sample("jobs/Harrow Creek.gdb")));
            settle(paintingTime);
            save("main-job", main);
        });
        constexpr std::int16_t firstDataMode = 1;
        dialog("ls-options-2", [&] { main.editLsOptions(2, firstDataMode); });
        dialog("ls-options-3", [&] { main.editLsOptions(3); });
        dialog("ls-options-4", [&] { main.editLsOptions(4); });
        dialog("point-save-4", [&] { main.editPointSave(); });
        dialog("display", [&] { main.editDisplay(); });
        dialog("preferences", [&] { main.editPreferences(); });
        step("job-list", [&] { jobList(main); });
        step("problems", [&] { problems(main); });
        main.openReport(QString::fromStdString(sample("network.log")));
        settle(paintingTime);
        if (visibleWindows().size() != 2)
            throw std::runtime_error("the main window does not open a modeless viewer");
        main.close();
        if (!visibleWindows().isEmpty())
            throw std::runtime_error("the viewer stays open after the main window");
    });
    step("gauge", [&] { gauge(); });
    for (const ViewerShot& shot : viewerShots)
        step(shot.name, [&] { viewer(shot.name, sample(shot.sample), shot.mode, false); });
    step("viewer-open", [&] { viewer("viewer-open", "", 24, true); });
    step("viewer-missing", [&] { missingFile(); });
    step("print-preview", [&] { ofMenu("print-preview", "network.log", "mnu_PrintPreview"); });
    step("print-preview-wide", [&] { ofMenu("print-preview-wide", "traverse.sum", "mnu_PrintPreview"); });
    step("print", [&] { ofMenu("print", "network.log", "mnu_Print"); });
    step("help", [&] { help(); });
    return failures_ == 0;
}

void Tour::step(const std::string& name, const std::function<void()>& body) {
    try {
        body();
    } catch (const std::exception& error) {
        ++failures_;
        std::printf("FAILED %s: %s\n", name.c_str(), error.what());
        std::fflush(stdout);
    }
}

void Tour::save(const std::string& name, QWidget& window, bool mayBeEmpty) {
    const QImage image = window.grab().toImage();
    const QImage body = image.copy(0, image.height() / 5, image.width(), image.height() * 4 / 5);
    if (image.isNull() || inkShare(mayBeEmpty ? image : body) < (mayBeEmpty ? 1e-6 : leastInk))
        throw std::runtime_error("the picture of " + name + " is blank");
    const QString path = folder_.filePath(QString::fromStdString(name) + ".png");
    if (!image.save(path, "PNG"))
        throw std::runtime_error("the picture " + path.toStdString() + " cannot be written");
    std::printf("ok  %s  %s %dx%d\n", name.c_str(), qPrintable(path), image.width(), image.height());
    std::fflush(stdout);
}

std::string Tour::sample(const char* name) const {
    const QFileInfo file(QDir(host_->paths.samples), name);
    if (host_->paths.samples.isEmpty() || !file.isFile())
        throw std::runtime_error(std::string("the sample ") + name + " is not installed");
    return file.absoluteFilePath().toStdString();
}

void Tour::gauge() {
    const auto before = visibleWindows();
    runGaugeDemo(component_, 1, [&](int percent) {
        if (percent != 0 && percent != 42 && percent != 100)
            return;
        settle(paintingTime);
        for (QWidget* window : visibleWindows())
            if (!before.contains(window))
                return save("gauge-" + std::to_string(percent), *window);
        throw std::runtime_error("the gauge window is not shown at " + std::to_string(percent) + " %");
    });
    settle(paintingTime);
    if (visibleWindows() != before)
        throw std::runtime_error("the gauge window stays open after GaugeRemove");
}

void Tour::viewer(const std::string& name, const std::string& file, std::int16_t mode, bool mayBeEmpty) {
    const WindowVisitor visitor([&](QWidget& window) { save(name, window, mayBeEmpty); });
    component_.viewFile(file, mode, true);
    if (!visitor.failure().empty())
        throw std::runtime_error(visitor.failure());
    if (visitor.visited() != 1)
        throw std::runtime_error("expected one window, not " + std::to_string(visitor.visited()));
}

void Tour::missingFile() {
    int boxes = 0;
    const WindowVisitor visitor([&](QWidget& window) {
        if (qobject_cast<QMessageBox*>(&window) && ++boxes == 1)
            save("viewer-missing", window);
    });
    component_.viewFile(folder_.absoluteFilePath("there is no such file.log").toStdString(), 25, true);
    if (!visitor.failure().empty())
        throw std::runtime_error(visitor.failure());
    if (boxes != 1)
        throw std::runtime_error("expected one message, not " + std::to_string(boxes));
}

void Tour::help() {
    bool found = false;
    const WindowVisitor visitor([&](QWidget& viewer) {
        // As the window system would: to the native window, which passes it on.
        QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
        QApplication::sendEvent(viewer.windowHandle(), &press);
        settle(paintingTime);
        for (QWidget* window : visibleWindows())
            if (window->objectName() == "frmHelp") {
                found = true;
                save("help", *window);
                window->close();
            }
    });
    component_.viewFile(sample("network.log"), 25, true);
    if (!visitor.failure().empty())
        throw std::runtime_error(visitor.failure());
    if (!found)
        throw std::runtime_error("F1 in the viewer opens no help window");
}

// The modal window that an item of the viewer's menus opens.
void Tour::ofMenu(const std::string& name, const char* file, const QString& item) {
    std::string failure = "it opens no window";
    const WindowVisitor visitor([&](QWidget& viewer) {
        auto* const action = viewer.findChild<QAction*>(item);
        if (!action)
            throw std::runtime_error("the viewer's menus have no " + item.toStdString());
        QTimer::singleShot(paintingTime, &viewer, [&] {
            QWidget* const window = QApplication::activeModalWidget();
            if (!window)
                return;
            try {
                settle(paintingTime);
                save(name, *window);
                failure.clear();
            } catch (const std::exception& error) {
                failure = error.what();
            }
            window->close();
        });
        action->trigger();
    });
    component_.viewFile(sample(file), 25, true);
    if (!visitor.failure().empty() || !failure.empty())
        throw std::runtime_error(visitor.failure() + failure);
}

void Tour::instantHelp() {
    bool isExplained = false;
    WindowVisitor visitor([&](QWidget& viewer) {
        viewer.activateWindow();
        settle(paintingTime);
        auto* const panel = viewer.findChild<QFrame*>("pnlInstantHelp");
        isExplained = panel && panel->isVisible();
        if (isExplained)
            save("instant-help", *panel);
    });
    component_.viewFile(sample("network.log"), 25, true);
    if (!visitor.failure().empty())
        throw std::runtime_error(visitor.failure());
    if (!isExplained)
        throw std::runtime_error("the viewer shows no instant help");
}

// A click on the title of a column, as the window system would make it.
void clickTitle(const QTableView& grid, int column) {
    QHeaderView& titles = *grid.horizontalHeader();
    const QPointF place(
        titles.sectionViewportPosition(column) + titles.sectionSize(column) / 2.0, titles.height() / 2.0);
    const QPointF onScreen = titles.viewport()->mapToGlobal(place);
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const auto held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, place, onScreen, Qt::LeftButton, held, Qt::NoModifier);
        QApplication::sendEvent(titles.viewport(), &event);
    }
    settle(paintingTime);
}

void Tour::jobList(MainWindow& main) {
    bool ordered = false;
    const WindowVisitor visitor([&](QWidget& window) {
        save("job-list", window);
        const auto* grid = window.findChild<QTableView*>();
        if (!grid)
            throw std::runtime_error("the job list has no grid");
        constexpr int dates = 1;
        const auto firstJob = [&] { return grid->model()->index(0, 0).data().toString(); };
        const QString before = firstJob();
        clickTitle(*grid, dates);
        ordered = firstJob() != before;
        save("job-list-sorted", window);
    });
    main.listJobs();
    if (!visitor.failure().empty())
        throw std::runtime_error(visitor.failure());
    if (visitor.visited() != 1 || !ordered)
        throw std::runtime_error("the job list is not shown or not ordered by a click on a title");
}

void Tour::dialog(const std::string& name, const std::function<void()>& show) {
    step(name, [&] {
        int dialogs = 0;
        const WindowVisitor visitor([&](QWidget& window) {
            if (qobject_cast<QMessageBox*>(&window))
                throw std::runtime_error("a message is in the way of the dialog");
            ++dialogs;
            save(name, window);
            if (auto* const tabs = window.findChild<QTabWidget*>())
                for (int page = 1; page < tabs->count(); ++page) {
                    tabs->setCurrentIndex(page);
                    save(name + "-" + std::to_string(page + 1), window);
                }
            // A close box may count as OK, and the tour changes nothing.
            if (auto* const cancel = window.findChild<QPushButton*>("cmdCancel"))
                cancel->click();
        });
        show();
        if (!visitor.failure().empty())
            throw std::runtime_error(visitor.failure());
        if (dialogs != 1)
            throw std::runtime_error("the dialog is not shown");
    });
}

void Tour::problems(MainWindow& main) {
    const WindowVisitor visitor([&](QWidget& window) { save("problems", window, true); });
    auto* button = main.findChild<QPushButton*>("cmdProblems");
    if (!button || !button->isVisible())
        throw std::runtime_error("the main window does not count the job files that could not be read");
    button->click();
    if (!visitor.failure().empty() || visitor.visited() != 1)
        throw std::runtime_error("the problems are not shown " + visitor.failure());
}

void Tour::history(MainWindow& main) {
    const auto before = visibleWindows();
    main.showHistory();
    // The page comes when it has been read and drawn.
    constexpr int loadingTime = 2500;
    settle(loadingTime);
    for (QWidget* window : visibleWindows()) {
        if (before.contains(window))
            continue;
        save("history", *window);
        window->close();
        return settle(paintingTime);
    }
    throw std::runtime_error("the history is not shown");
}

} // namespace

bool runTour(const HostPtr& host, ComponentAccess& component, const QString& folder) {
    QApplication::setQuitOnLastWindowClosed(false);
    return Tour(host, component, folder).run();
}

double inkShare(const QImage& image) {
    QHash<QRgb, int> counts;
    int most = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, ++counts[image.pixel(x, y)]);
    const double all = static_cast<double>(image.width()) * image.height();
    return all > 0 ? 1 - most / all : 0;
}

} // namespace kestal
