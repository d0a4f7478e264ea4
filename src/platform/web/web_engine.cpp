#include "platform/web/web_engine.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <QWebEngineProfile>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace genutil {
namespace {

constexpr const char* engineFlags = "QTWEBENGINE_CHROMIUM_FLAGS";

// What the engine writes about the graphics it found, and that it runs without a sandbox, means nothing to
// users.
class QuietStart {
public:
    QuietStart() { usual_ = QLoggingCategory::installFilter(filter); }
    ~QuietStart() { QLoggingCategory::installFilter(usual_); }
    QuietStart(const QuietStart&) = delete;

private:
    static void filter(QLoggingCategory* category) {
        if (usual_) // while it is being replaced, categories are as it has left them
            usual_(category);
        const std::string_view name = category->categoryName();
        if (name == "qt.webenginecontext" || name == "default")
            for (const QtMsgType kind : {QtDebugMsg, QtInfoMsg, QtWarningMsg})
                category->setEnabled(kind, false);
    }

    static inline QLoggingCategory::CategoryFilter usual_ = nullptr;
};

// Adds flags that the engine reads as it starts; programs that are started later do not see them.
class StartFlags {
public:
    explicit StartFlags(const QByteArray& added)
        : wasSet_(qEnvironmentVariableIsSet(engineFlags)), earlier_(qgetenv(engineFlags)) {
        if (!added.isEmpty())
            qputenv(engineFlags, (earlier_ + ' ' + added).trimmed());
    }
    ~StartFlags() { wasSet_ ? qputenv(engineFlags, earlier_) : qunsetenv(engineFlags); }
    StartFlags(const StartFlags&) = delete;

private:
    bool wasSet_;
    QByteArray earlier_;
};

// Whether a process can be locked into a user namespace of its own, on which the engine's sandbox stands.
bool canLockProcessesIn() {
    const std::string user = std::to_string(::geteuid());
    const std::string map = user + ' ' + user + " 1\n";
    const long child = ::syscall(SYS_clone, CLONE_NEWUSER | SIGCHLD, nullptr, nullptr, nullptr, nullptr);
    if (child == 0) {
        const int file = ::open("/proc/self/uid_map", O_WRONLY | O_CLOEXEC);
        ::_exit(file >= 0 && ::write(file, map.data(), map.size()) == ssize_t(map.size()) ? 0 : 1);
    }
    int status = 0;
    return child > 0 && ::waitpid(pid_t(child), &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

bool hasNoSandboxAlready() {
    return qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX") ||
           qgetenv(engineFlags).contains("--no-sandbox");
}

} // namespace

void startWebEngine() {
    static bool started = false;
    if (started)
        return;
    // The engine refuses to lock in what the superuser runs; for every other user the sandbox stays.
    const bool isSuperuser = ::geteuid() == 0;
    if (!isSuperuser && !hasNoSandboxAlready() && !canLockProcessesIn())
        throw std::runtime_error(
            "this system does not let programs make user namespaces, in which pages are locked "
            "(kernel.unprivileged_userns_clone, user.max_user_namespaces)");
    QByteArray flags;
    if (isSuperuser)
        flags += "--no-sandbox ";
    // Without a place for shared memory, as in small containers, the engine uses temporary files.
    if (::access("/dev/shm", W_OK) != 0)
        flags += "--disable-dev-shm-usage ";
    // Pages of text are painted without the graphics card: faster to start, and no driver can fail. A host
    // with Qt Quick windows of its own has made its choice.
    if (std::ranges::none_of(
            QGuiApplication::allWindows(), [](QWindow* w) { return w->inherits("QQuickWindow"); }))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QuietStart quiet;
    const StartFlags added(flags.trimmed());
    const QWebEngineProfile starting;
    started = true;
}

} // namespace genutil
