#include "host/ls_commands.h"

#include "host/component_access.h"
#include "host/current_job.h"
#include "host/database_objects.h"
#include "host/job_commands.h"
#include "host/job_schema.h"
#include "host/late_bound.h"
#include "host/ls_option_set.h"
#include "host/output.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace kestal {
namespace {

// Numbers without an exponent.
std::string plainText(const VARIANT& value) {
    if (value.vt != VT_R8 && value.vt != VT_R4)
        return textOf(value);
    char digits[400]; // any number of double precision
    const auto end =
        value.vt == VT_R4
            ? std::to_chars(digits, digits + sizeof digits, value.fltVal, std::chars_format::fixed)
            : std::to_chars(digits, digits + sizeof digits, value.dblVal, std::chars_format::fixed);
    return std::string(digits, end.ptr);
}

// Name, value, unit.
using DumpLine = std::array<std::string, 3>;

std::string aligned(const std::vector<DumpLine>& lines) {
    std::array<std::size_t, 2> widths{};
    for (const DumpLine& line : lines)
        for (std::size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    std::string text;
    for (const auto& [name, value, unit] : lines) {
        text += name + std::string(widths[0] - name.size(), ' ') + "  " + value;
        text += unit.empty() ? "" : std::string(widths[1] - value.size(), ' ') + "  " + unit;
        text += '\n';
    }
    return text;
}

} // namespace

int runLsOptions(const CommandLine& line, const HostPtr& host, ComponentAccess& component) {
    const bool hasJob = line.has("--job");
    const int mode = line.number("--mode", hasJob ? ls_modes::JobAndSet : ls_modes::Preferences);
    if (hasJob != (mode != ls_modes::Preferences))
        return refuseCommandLine(
            hasJob ? "--mode 1 edits the preferences and takes no --job"
                   : "the modes 2, 3 and 4 edit the options of a job: --job FILE is needed");
    if (line.has("--page") != (mode == ls_modes::Page))
        return refuseCommandLine("--page N is needed with --mode 2 and used with no other");
    component.editLsOptions(static_cast<std::int16_t>(mode),
        static_cast<std::int16_t>(line.number("--page", 0)), openedJob(line, *host));
    return exit_codes::Success;
}

int dumpLsOptions(const CommandLine& line, const HostPtr& host) {
    if (line.has("--mode") || line.has("--page"))
        return refuseCommandLine(
            "--dump writes the preferences or, with --job, the first header record: it takes neither "
            "--mode nor --page");
    const CurrentJob job = openedJob(line, *host);
    Ref<IDispatch> header;
    if (job.isOpen())
        header = job.openOptions(OptionRecords::OfJob);
    const bool isStored = header && !truthOf(LateBound(header.get()).get("EOF"));
    std::vector<DumpLine> lines;
    for (const LsOption& option : lsOptions()) {
        const Variant stored = isStored ? fieldOf(header.get(), option.name) : Variant();
        const bool isOwn = stored.vt != VT_EMPTY && stored.vt != VT_NULL;
        std::string unit = option.unit;
        // What a job does not say is shown and used as the preferences have it.
        if (job.isOpen() && !isOwn)
            unit += unit.empty() ? "(preference)" : " (preference)";
        lines.push_back({option.name, plainText(isOwn ? stored : host->lsOptions->value(option.name)), unit});
    }
    return writeOutput(aligned(lines)) ? exit_codes::Success : exit_codes::Failure;
}

int runPointSave(const CommandLine& line, const HostPtr& host, ComponentAccess& component) {
    component.editPointSave(openedJob(line, *host));
    return exit_codes::Success;
}

} // namespace kestal
