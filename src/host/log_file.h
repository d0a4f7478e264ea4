#pragma once

#include <QString>

namespace kestal {

/// The program's log: one line per entry, appended at once. When the file would grow past `largest` bytes it
/// becomes "<file>.old", which replaces an earlier one, and a new file is begun. A log that cannot be written
/// is said so once on the standard error stream and is otherwise ignored.
class LogFile {
public:
    static constexpr qint64 defaultLargest = 256 * 1024;

    explicit LogFile(QString path, qint64 largest = defaultLargest)
        : path_(std::move(path)), largest_(largest) {}

    const QString& path() const { return path_; }
    QString oldPath() const { return path_ + ".old"; }
    /// Line breaks in the text become " | ".
    void write(const QString& text);

private:
    QString path_;
    qint64 largest_;
    bool complained_ = false;
};

} // namespace kestal
