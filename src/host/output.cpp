#include "host/output.h"

#include "host/commands.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace kestal {
namespace {

// Notes and problems share the terminal's line.
std::mutex terminal;
bool hasNote = false;

void eraseNote() {
    if (std::exchange(hasNote, false))
        std::fputs("\r\033[K", stderr);
}

} // namespace

void guardStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) >= 0)
            continue;
        // The lowest free number is taken, which is the stream's. An output that is open for reading only
        // fails like a closed one.
        if (::open("/dev/null", O_RDONLY) < 0)
            return;
    }
}

bool writeOutput(const std::string& text) {
    const bool written =
        std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    if (!written)
        printProblem(QString("the output cannot be written: %1").arg(std::strerror(errno)));
    return written;
}

void printProblem(QString text) {
    for (QChar& character : text)
        if (character.category() == QChar::Other_Control && character != '\n')
            character = QChar::ReplacementCharacter;
    const std::lock_guard lock(terminal);
    eraseNote();
    std::fprintf(stderr, "kestal: %s\n", text.toUtf8().constData());
}

int refuseCommandLine(const QString& rule) {
    printProblem(rule + "\nTry 'kestal --help'.");
    return exit_codes::Usage;
}

WaitingNote::WaitingNote(const char* work) {
    if (::isatty(STDERR_FILENO))
        thread_ = std::thread([this, work] { show(work); });
}

void WaitingNote::show(const char* work) {
    const auto start = std::chrono::steady_clock::now();
    std::unique_lock lock(mutex_);
    while (!ended_.wait_for(lock, std::chrono::milliseconds(500), [this] { return isOver_; })) {
        const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
        const std::lock_guard terminalLock(terminal);
        std::fprintf(stderr, "\rkestal: %s, %.0f s", work, passed.count());
        hasNote = true;
    }
}

WaitingNote::~WaitingNote() {
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    ended_.notify_all();
    thread_.join();
    const std::lock_guard lock(terminal);
    eraseNote();
}

} // namespace kestal
