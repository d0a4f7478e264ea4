#include "host/print_command.h"

#include "host/component_access.h"
#include "host/output.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <optional>

namespace kestal {
namespace {

// Both are in it; 0 as the last one is the end.
struct Range {
    LONG from = 1;
    LONG to = 0;
};

// "3", "2-5", "2-" or "-5". Nothing for what is no range.
std::optional<Range> rangeOf(const QString& text) {
    static const QRegularExpression form("^(\\d*)(-?)(\\d*)$");
    const auto parts = form.match(text);
    const QString first = parts.captured(1), last = parts.captured(3);
    if (!parts.hasMatch() || (first.isEmpty() && last.isEmpty()))
        return std::nullopt;
    bool firstFits = true, lastFits = true;
    Range range;
    if (!first.isEmpty())
        range.from = first.toInt(&firstFits);
    if (!last.isEmpty())
        range.to = last.toInt(&lastFits);
    else if (parts.captured(2).isEmpty())
        range.to = range.from;
    const bool hasNoZero = range.from >= 1 && (range.to >= 1 || last.isEmpty());
    const bool isRising = range.to == 0 || range.from <= range.to;
    return firstFits && lastFits && hasNoZero && isRising ? std::optional(range) : std::nullopt;
}

std::string absolute(const std::string& file) {
    return QFileInfo(QString::fromStdString(file)).absoluteFilePath().toStdString();
}

} // namespace

int runPrint(const CommandLine& line, const HostPtr& host, ComponentAccess& component) {
    Range lines, pages;
    for (auto [name, range] : {std::pair("--lines", &lines), std::pair("--pages", &pages)}) {
        if (!line.has(name))
            continue;
        const QString given = QString::fromStdString(line.options.at(name));
        const auto read = rangeOf(given);
        if (!read)
            return refuseCommandLine(
                QString("%1 must be A-B, A, A- or -B, numbers from 1 with A not above B, not '%2'")
                    .arg(name, given));
        *range = *read;
    }
    if (line.has("--portrait") && line.has("--landscape"))
        return refuseCommandLine("--portrait and --landscape exclude each other");
    constexpr short byName = 0, portrait = 1, landscape = 2;
    const short orientation = line.has("--portrait")    ? portrait
                              : line.has("--landscape") ? landscape
                                                        : byName;
    k_genutil::Text report(absolute(line.file)), pdf(absolute(line.options.at("--pdf")));
    auto prog = Ref<IDispatch>::share(host->prog.get());
    k_genutil::Text cutOff;
    LONG printed = 0;
    const auto printing =
        component.create<k_genutil::_ReportPrinting>(k_genutil::classes::cFileViewLoader.progId);
    try {
        const WaitingNote note("printing");
        component.check(
            printing->PrintToPdf(report.inOut(), pdf.inOut(), prog.inOut(), orientation, lines.from, lines.to,
                pages.from, pages.to, short(line.number("--copies", 1)), &printed, cutOff.inOut()),
            "Printing " + line.file);
        if (const std::string lost = cutOff.utf8(); !lost.empty())
            printProblem(QString::fromStdString(line.file + ": " + lost));
    } catch (const ComponentError& error) {
        printProblem(QString::fromStdString(error.reason()));
        return exit_codes::Failure;
    }
    return exit_codes::Success;
}

} // namespace kestal
