#include "platform/qt/print/paper_queue.h"

#include "hostif/error.h"

#include <QFile>
#include <QLibrary>

#include <algorithm>
#include <array>
#include <string_view>

namespace genutil {
namespace {

// What the library's functions take and give.
struct QueueOption {
    char* name;
    char* value;
};
struct Destination {
    char* name;
    char* instance;
    int isDefault;
    int optionCount;
    QueueOption* options;
};
using AnswerPassword = const char* (*)(const char*, void*, const char*, const char*, void*);

struct QueueLibrary {
    const char* (*driverFile)(const char* printer) = nullptr;
    Destination* (*destination)(void* connection, const char* printer, const char* instance) = nullptr;
    void (*freeDestinations)(int count, Destination*) = nullptr;
    int (*addOption)(const char* name, const char* value, int count, QueueOption**) = nullptr;
    void (*freeOptions)(int count, QueueOption*) = nullptr;
    int (*printFile)(const char* printer, const char* file, const char* title, int, QueueOption*) = nullptr;
    const char* (*lastError)() = nullptr;
    void (*setPasswordCallback)(AnswerPassword, void*) = nullptr;
    const char* (*server)() = nullptr;
    int (*port)() = nullptr;
    int (*encryption)() = nullptr;
    void* (*connect)(const char* server, int port, void* addresses, int family, int encryption,
        int isBlocking, int milliseconds, int* cancel) = nullptr;
    void (*setTimeout)(void* connection, double seconds, void* callback, void* data) = nullptr;
    int (*askOptions)(void* connection, const char* path) = nullptr;
    int (*update)(void* connection) = nullptr;
    void (*close)(void* connection) = nullptr;
    bool isWhole = false;

    QueueLibrary() {
        QLibrary library(QStringLiteral("cups"), 2);
        isWhole =
            resolve(library, driverFile, "cupsGetPPD") && resolve(library, destination, "cupsGetNamedDest") &&
            resolve(library, freeDestinations, "cupsFreeDests") &&
            resolve(library, addOption, "cupsAddOption") &&
            resolve(library, freeOptions, "cupsFreeOptions") &&
            resolve(library, printFile, "cupsPrintFile") &&
            resolve(library, lastError, "cupsLastErrorString") &&
            resolve(library, setPasswordCallback, "cupsSetPasswordCB2") &&
            resolve(library, server, "cupsServer") && resolve(library, port, "ippPort") &&
            resolve(library, encryption, "cupsEncryption") && resolve(library, connect, "httpConnect2") &&
            resolve(library, setTimeout, "httpSetTimeout") && resolve(library, askOptions, "httpOptions") &&
            resolve(library, update, "httpUpdate") && resolve(library, close, "httpClose");
        // Unasked, it would wait for a password at the terminal.
        if (isWhole)
            setPasswordCallback(
                [](const char*, void*, const char*, const char*, void*) -> const char* { return nullptr; },
                nullptr);
    }

private:
    template<typename Function>
    static bool resolve(QLibrary& library, Function& function, const char* name) {
        function = reinterpret_cast<Function>(library.resolve(name));
        return function != nullptr;
    }
};

const QueueLibrary& queueLibrary() {
    static const QueueLibrary library;
    return library;
}

// One request that any server answers, whatever the answer is.
bool answers(const QueueLibrary& library, int patience) {
    constexpr int more = 100; // the status before the answer is whole
    constexpr int anyFamily = 0, isBlocking = 1;
    void* const connection = library.connect(library.server(), library.port(), nullptr, anyFamily,
        library.encryption(), isBlocking, patience * 1000, nullptr);
    if (!connection)
        return false;
    library.setTimeout(connection, patience, nullptr, nullptr);
    int status = library.askOptions(connection, "/") == 0 ? more : 0;
    while (status == more)
        status = library.update(connection);
    library.close(connection);
    return status > more;
}

// "office/draft" is the printer "office" with the options that its user calls "draft".
struct QueueName {
    QByteArray printer;
    QByteArray instance;

    explicit QueueName(const QString& name)
        : printer(name.section(QLatin1Char('/'), 0, 0).toUtf8()),
          instance(name.section(QLatin1Char('/'), 1).toUtf8()) {}
    const char* instanceOrNone() const { return instance.isEmpty() ? nullptr : instance.constData(); }
};

// Options that say the same as another one, or would turn or scale the sheet that has been laid out.
struct SameOption {
    std::string_view name;
    std::array<std::string_view, 4> others;
};
constexpr std::array sameOptions{
    SameOption{"media", {"PageSize", "PageRegion", "media-col"}},
    SameOption{"InputSlot", {"media-source", "media-col"}},
    SameOption{"print-color-mode", {"ColorModel", "ColorMode"}},
    SameOption{"sides", {"Duplex"}},
    SameOption{"print-quality", {"cupsPrintQuality", "OutputMode"}},
    SameOption{"printer-resolution", {"Resolution"}},
    SameOption{"copies", {"Collate", "multiple-document-handling"}},
    SameOption{"print-scaling", {"fit-to-page", "scaling", "landscape", "orientation-requested"}},
};

bool isSaidBy(const JobOptions& options, std::string_view name) {
    return std::ranges::any_of(sameOptions, [&](const SameOption& same) {
        return options.contains(std::string(same.name)) && std::ranges::count(same.others, name) > 0;
    });
}

// False when there is no such printer.
bool addUsersOptions(const QueueLibrary& library, const QueueName& queue, JobOptions& options) {
    Destination* const found = library.destination(nullptr, queue.printer, queue.instanceOrNone());
    if (!found)
        return false;
    const JobOptions given = options;
    for (int i = 0; i < found->optionCount; ++i)
        if (!isSaidBy(given, found->options[i].name))
            options.emplace(found->options[i].name, found->options[i].value);
    library.freeDestinations(1, found);
    return true;
}

} // namespace

bool schedulerAnswers() {
    static bool hasAnswered = true; // the last time
    const QueueLibrary& library = queueLibrary();
    hasAnswered = library.isWhole && answers(library, hasAnswered ? 5 : 1);
    return hasAnswered;
}

DriverChoices driverChoices(const QString& printer) {
    DriverChoices choices;
    const char* const path =
        queueLibrary().isWhole ? queueLibrary().driverFile(QueueName(printer).printer) : nullptr;
    if (!path)
        return choices;
    // A copy, or a link to the driver's. Of its lines "*Option Choice/Title: ..." are choices.
    QFile driver(QFile::decodeName(path));
    if (driver.open(QIODevice::ReadOnly))
        while (!driver.atEnd()) {
            const QByteArray line = driver.readLine();
            const qsizetype blank = line.indexOf(' ');
            const qsizetype colon = line.indexOf(':');
            if (!line.startsWith('*') || blank < 0 || blank > colon)
                continue;
            const QByteArray entry = line.mid(blank, colon - blank).trimmed();
            const qsizetype slash = entry.indexOf('/');
            choices[line.mid(1, blank - 1).toStdString()].push_back(
                {(slash < 0 ? entry : entry.left(slash)).toStdString(),
                    QString::fromUtf8(entry.mid(slash + 1))});
        }
    driver.remove();
    return choices;
}

void sendToQueue(const QString& printer, const QString& file, const QString& title, JobOptions options) {
    const QueueLibrary& library = queueLibrary();
    const auto fail = [&](const std::string& why) {
        throw Error(errors::DeviceError,
            "The printer '" + printer.toStdString() + "' has not accepted the document: " + why);
    };
    if (!library.isWhole)
        fail("the system's printing library is missing");
    if (!schedulerAnswers())
        fail("the scheduler of the system's printers does not answer");
    const QueueName queue(printer);
    if (!addUsersOptions(library, queue, options))
        fail("it is not there any more");
    QueueOption* list = nullptr;
    int count = 0;
    for (const auto& [name, value] : options)
        count = library.addOption(name.c_str(), value.c_str(), count, &list);
    const int job = library.printFile(queue.printer, QFile::encodeName(file), title.toUtf8(), count, list);
    library.freeOptions(count, list);
    if (job == 0) {
        const char* const why = library.lastError();
        fail(why ? why : "the reason is not known");
    }
}

} // namespace genutil
