#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// The queues of the system's printers. The library that knows them is loaded when one is first used, so that
// the program runs without it.
namespace genutil {

struct PaperSource {
    std::int16_t number = 0; // that of printer drivers; from 256 on what only this printer has
    QByteArray choice;       // the driver's name for it
    QString title;           // the user's
};

// In the driver's order; none where the driver does not tell.
std::vector<PaperSource> paperSources(const QString& printer);

// By the names of the Internet Printing Protocol or of the driver.
using JobOptions = std::map<std::string, std::string>;

// Has the printer print the PDF file, which may go afterwards. The user's own options for this printer hold
// where `options` has none. Throws Error with DeviceError when the queue does not take the file.
void sendToQueue(const QString& printer, const QString& file, const QString& title, JobOptions options);

} // namespace genutil
