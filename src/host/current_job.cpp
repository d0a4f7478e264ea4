#include "host/current_job.h"

#include "host/database_objects.h"
#include "host/job_schema.h"
#include "host/late_bound.h"
#include "host/text_rules.h"
#include "hostif/error.h"
#include "platform/database/database_engine.h"

#include <QFileInfo>

namespace kestal {
namespace {

constexpr int itemNotFound = genutil::errors::ItemNotFound;

// The job's file as the list of jobs splits it: the extension begins at the first dot.
Ref<JobObject> jobOf(const QString& path) {
    const QFileInfo file(path);
    const QString name = file.fileName();
    const auto dot = name.indexOf('.') < 0 ? name.size() : name.indexOf('.');
    const QString folder = file.absolutePath();
    const std::pair<const char*, QString> parts[] = {
        {"JobPath", folder.endsWith('/') ? folder : folder + '/'}, {"JobName", name.left(dot)},
        {"JobExtension", name.mid(dot)}};
    auto job = Ref<JobObject>::adopt(new JobObject);
    for (const auto& [member, text] : parts)
        job->set(member, Variant(std::string_view(text.toStdString())));
    return job;
}

// A stored value as the job's records keep it.
Variant tidied(const std::string& field, Variant value) {
    constexpr std::int16_t fiveDecimals = -5;
    if (field == "NValue")
        return Variant(transformValue(numberOf(value), fiveDecimals));
    if (field == "InterpMethod")
        return Variant(std::string_view(interpolation::currentName(textOf(value))));
    if (field == "GridFile" && textOf(value) == "*") // how "none" was stored
        return Variant("");
    return value;
}

} // namespace

void CurrentJob::open(const QString& path) {
    // Read and write where the engine can: Jet files are never written.
    const auto opened = genutil::makeDatabaseEngine()->OpenDatabase(path.toStdString(), false, false);
    CurrentJob next;
    next.detailsRset = makeRecordsetObject(opened->OpenRecordset(job_tables::Details));
    next.database = makeDatabaseObject(opened);
    next.job = jobOf(path);
    next.jobDetails = Ref<RecordObject>::adopt(new RecordObject(records::jobDetails()));
    next.jobCfg = Ref<RecordObject>::adopt(new RecordObject(records::jobCfg()));
    next.jobGeneral = Ref<RecordObject>::adopt(new RecordObject(records::jobGeneral()));
    next.tables = opened;
    next.readDetails();
    next.deriveDisplays();
    *this = std::move(next);
}

Ref<IDispatch> CurrentJob::openOptions(OptionRecords kind) const {
    try {
        return makeRecordsetObject(optionRecords(tables->OpenRecordset(job_tables::DataHeader), kind));
    } catch (const genutil::Error& error) {
        throw AutomationError(error.number(), error.description());
    }
}

bool CurrentJob::hasAlphaIds() const {
    try {
        return tables && !tables->OpenRecordset(job_tables::AlphaIds)->EOF_();
    } catch (const genutil::Error&) {
        return false; // a job of a version without names
    }
}

// A projection or geographic coordinates have what a plane job lacks: zones, N-values, geographic plots.
// Degrees have no one scale.
void CurrentJob::deriveDisplays() {
    const auto type = int16Of(jobCfg->value("CoordType"));
    constexpr std::int16_t projection = 1;
    constexpr std::int16_t geographic = 2;
    jobCfg->set("GeodeticDisplays", Variant(type == projection || type == geographic));
    jobCfg->set("NoLinearScale", Variant(type == geographic));
}

void CurrentJob::readDetails() {
    if (truthOf(LateBound(detailsRset.get()).get("EOF")))
        return jobDetails->set("Description", Variant("(Incomplete database)"));
    for (RecordObject* const record : {jobDetails.get(), jobCfg.get(), jobGeneral.get()})
        for (const auto& field : record->fields())
            readField(*record, field.name);
}

void CurrentJob::readField(RecordObject& record, const std::string& field) {
    try {
        Variant value = fieldOf(detailsRset.get(), field);
        if (value.vt != VT_NULL)
            record.set(field, tidied(field, std::move(value)));
    } catch (const ConversionError& fault) {
        faults += QString("The field %1 is not used: %2").arg(field.c_str(), fault.what());
    } catch (const AutomationError& error) {
        if (error.number() != itemNotFound)
            faults += QString("The field %1 is not used: %2").arg(field.c_str(), error.what());
    }
}

} // namespace kestal
