#pragma once

#include <QString>

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace kestal {

/// To be called first: makes the standard streams that the program was started without refuse what is written
/// to them, so that no file opened later takes their place, and a pipe that nobody reads an error instead of
/// the program's end.
void guardStandardStreams();

/// Writes the text to the standard output stream. False when it cannot be written whole; the reason is on the
/// standard error stream then.
bool writeOutput(const std::string& text);

/// Writes a problem to the standard error stream, without the characters in it that would command a terminal.
void printProblem(QString text);

/// The same for a command line that is wrong. Returns exit_codes::Usage.
int refuseCommandLine(const QString& rule);

/// While it lives, a terminal at the standard error stream shows what the program is doing and for how long,
/// once that takes more than half a second. Nothing of it stays.
class WaitingNote {
public:
    explicit WaitingNote(const char* work);
    ~WaitingNote();
    WaitingNote(const WaitingNote&) = delete;
    WaitingNote& operator=(const WaitingNote&) = delete;

private:
    void show(const char* work);

    std::mutex mutex_;
    std::condition_variable ended_;
    bool isOver_ = false;
    std::thread thread_;
};

} // namespace kestal
