#pragma once

#include <QString>

#include <map>
#include <string>
#include <vector>

// The queues of the system's printers. The library that knows them is loaded when one is first used, so that
// the program runs without it.
namespace genutil {

// Whether the scheduler that keeps the queues does. One that hangs would hang whoever asks it for a printer:
// it is given five seconds, and after a time without an answer one.
bool schedulerAnswers();

struct DriverChoice {
    std::string name;
    QString title; // the user's
};
// What a printer's driver lets choose, by the name of the option; nothing where the driver does not tell.
using DriverChoices = std::map<std::string, std::vector<DriverChoice>>;
DriverChoices driverChoices(const QString& printer);

// By the names of the Internet Printing Protocol or of the driver.
using JobOptions = std::map<std::string, std::string>;

// Has the printer print the PDF file, which may go afterwards. The user's own options for this printer hold
// where `options` has none. Throws Error with DeviceError when the queue does not take the file.
void sendToQueue(const QString& printer, const QString& file, const QString& title, JobOptions options);

} // namespace genutil
