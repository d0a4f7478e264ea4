#include "platform/qt/file_watch.h"

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>

namespace genutil {
namespace {

constexpr int pause = 200; // milliseconds

class QtFileWatch : public FileWatch {
public:
    QtFileWatch(const std::string& path, std::function<void()> changed)
        : file_(QFileInfo(QString::fromStdString(path)).absoluteFilePath()), changed_(std::move(changed)) {
        timer_.setSingleShot(true);
        timer_.setInterval(pause);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tell(); });
        const auto start = [this] {
            if (!timer_.isActive())
                timer_.start();
        };
        QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, &timer_, start);
        QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &timer_, start);
        watcher_.addPath(QFileInfo(file_).absolutePath());
        watcher_.addPath(file_);
    }

private:
    void tell() {
        // A file that was replaced is another one, which is not watched yet.
        if (!watcher_.files().contains(file_) && QFileInfo::exists(file_))
            watcher_.addPath(file_);
        const auto changed = changed_; // may end this watch
        changed();
    }

    QString file_;
    std::function<void()> changed_;
    QFileSystemWatcher watcher_;
    QTimer timer_;
};

} // namespace

std::unique_ptr<FileWatch> makeFileWatch(const std::string& path, std::function<void()> changed) {
    return std::make_unique<QtFileWatch>(path, std::move(changed));
}

} // namespace genutil
