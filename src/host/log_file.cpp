#include "host/log_file.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cstdio>

namespace kestal {

void LogFile::write(const QString& text) {
    static const QRegularExpression lineBreaks("[\\r\\n]+");
    QString entry = text.trimmed();
    entry.replace(lineBreaks, " | ");
    const QByteArray line =
        (QDateTime::currentDateTime().toString(Qt::ISODate) + "  " + entry + '\n').toUtf8().right(largest_);

    QDir().mkpath(QFileInfo(path_).path());
    if (QFileInfo(path_).size() + line.size() > largest_) {
        QFile::remove(oldPath());
        QFile::rename(path_, oldPath());
    }
    QFile file(path_);
    const bool written = file.open(QIODevice::Append) && file.write(line) == line.size() && file.flush();
    if (!written && !std::exchange(complained_, true))
        std::fprintf(stderr, "kestal: cannot write the log %s: %s\n", qPrintable(path_),
            qPrintable(file.errorString()));
}

} // namespace kestal
