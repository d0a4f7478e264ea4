#include "host/services.h"

#include <algorithm>
#include <utility>

namespace kestal {
namespace {

// errHandler. A report of a procedure is logged; one of an event handler, where the error ends, is also put
// before the user, together with what the procedure said in which it began; but what is wrong with the files
// of a list of jobs is collected.
class ErrHandler : public AutomationObject {
public:
    explicit ErrHandler(HostPtr host) : AutomationObject("k_genproc.errHandler"), host_(std::move(host)) {
        property(
            "SkipNextReport", [this] { return Variant(skipNextReport_); },
            [this](const VARIANT& value) { skipNextReport_ = truthOf(value); });
        method("ReportProcError", [this](const std::string& description, const std::string& procedure, bool) {
            host_->log.write(QString::fromStdString("Error in " + procedure + ": " + description));
            host_->procedureReports.push_back(description);
        });
        method("ReportEventError", [this](const std::string& description, const std::string& procedure) {
            QString place = QString::fromStdString("In " + procedure);
            const std::vector<std::string> reports = std::exchange(host_->procedureReports, {});
            const std::string* const origin = originOf(description, reports);
            // On its way to the reading of jobs an error may have kept no more than its number's own words,
            // which name nothing.
            const bool isOriginal = !origin || description.find_first_of("':") != std::string::npos;
            if (const auto problem = readingProblem(isOriginal ? description : *origin, procedure)) {
                host_->collect(*problem, place);
                return;
            }
            if (origin)
                place.prepend(QString::fromStdString(*origin + "\n"));
            host_->report(QString::fromStdString(description), place);
        });
    }

private:
    HostPtr host_;
    bool skipNextReport_ = false;
};

} // namespace

const std::string* originOf(
    const std::string& description, const std::vector<std::string>& procedureReports) {
    const auto origin = std::find_if(procedureReports.rbegin(), procedureReports.rend(),
        [&](const std::string& report) { return report != description; });
    return description.empty() || origin == procedureReports.rend() ? nullptr : &*origin;
}

Ref<IDispatch> makeErrHandler(const HostPtr& host) {
    return Ref<IDispatch>::adopt(new ErrHandler(host));
}

} // namespace kestal
