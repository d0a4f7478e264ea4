#include "platform/qt/paper_queue.h"

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
    bool isWhole = false;

    QueueLibrary() {
        QLibrary library(QStringLiteral("cups"), 2);
        isWhole = resolve(library, driverFile, "cupsGetPPD") &&
                  resolve(library, destination, "cupsGetNamedDest") &&
                  resolve(library, freeDestinations, "cupsFreeDests") &&
                  resolve(library, addOption, "cupsAddOption") &&
                  resolve(library, freeOptions, "cupsFreeOptions") &&
                  resolve(library, printFile, "cupsPrintFile") &&
                  resolve(library, lastError, "cupsLastErrorString") &&
                  resolve(library, setPasswordCallback, "cupsSetPasswordCB2");
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

struct KnownSource {
    std::string_view choice;
    std::int16_t number;
};
constexpr std::array knownSources{
    KnownSource{"Upper", 1},
    KnownSource{"Lower", 2},
    KnownSource{"Middle", 3},
    KnownSource{"Manual", 4},
    KnownSource{"ManualFeed", 4},
    KnownSource{"Envelope", 5},
    KnownSource{"EnvelopeManual", 6},
    KnownSource{"Auto", 7},
    KnownSource{"AutoSelect", 7},
    KnownSource{"Automatic", 7},
    KnownSource{"Tractor", 8},
    KnownSource{"SmallFormat", 9},
    KnownSource{"LargeFormat", 10},
    KnownSource{"LargeCapacity", 11},
    KnownSource{"Cassette", 14},
    KnownSource{"FormSource", 15},
};
constexpr int firstOwnNumber = 256;

std::int16_t numberOf(const QByteArray& choice, const std::vector<PaperSource>& earlier) {
    const auto known = std::ranges::find(
        knownSources, std::string_view(choice.data(), std::size_t(choice.size())), &KnownSource::choice);
    const auto own = std::int16_t(firstOwnNumber + earlier.size());
    if (known == knownSources.end() || std::ranges::count(earlier, known->number, &PaperSource::number) > 0)
        return own;
    return known->number;
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

void addUsersOptions(const QueueLibrary& library, const QueueName& queue, JobOptions& options) {
    Destination* const found = library.destination(nullptr, queue.printer, queue.instanceOrNone());
    if (!found)
        return;
    const JobOptions given = options;
    for (int i = 0; i < found->optionCount; ++i)
        if (!isSaidBy(given, found->options[i].name))
            options.emplace(found->options[i].name, found->options[i].value);
    library.freeDestinations(1, found);
}

} // namespace

std::vector<PaperSource> paperSources(const QString& printer) {
    std::vector<PaperSource> sources;
    if (!queueLibrary().isWhole)
        return sources;
    const char* const path = queueLibrary().driverFile(QueueName(printer).printer);
    if (!path)
        return sources;
    // A copy, or a link to the driver's.
    QFile driver(QFile::decodeName(path));
    if (driver.open(QIODevice::ReadOnly))
        while (!driver.atEnd()) {
            constexpr QByteArrayView keyword = "*InputSlot ";
            const QByteArray line = driver.readLine();
            const qsizetype end = line.indexOf(':');
            if (!line.startsWith(keyword) || end < 0)
                continue;
            const QByteArray entry = line.mid(keyword.size(), end - keyword.size()).trimmed();
            const qsizetype slash = entry.indexOf('/');
            const QByteArray choice = slash < 0 ? entry : entry.left(slash);
            sources.push_back({numberOf(choice, sources), choice, QString::fromUtf8(entry.mid(slash + 1))});
        }
    driver.remove();
    return sources;
}

void sendToQueue(const QString& printer, const QString& file, const QString& title, JobOptions options) {
    const QueueLibrary& library = queueLibrary();
    const auto fail = [&](const std::string& why) {
        throw Error(errors::DeviceError,
            "The printer '" + printer.toStdString() + "' has not taken the document: " + why);
    };
    if (!library.isWhole)
        fail("the system's printing library is missing");
    const QueueName queue(printer);
    addUsersOptions(library, queue, options);
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
