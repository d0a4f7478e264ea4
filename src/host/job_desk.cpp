#include "host/job_desk.h"

#include "host/job_schema.h"
#include "host/settings_file.h"

#include <QFileInfo>

namespace kestal {
namespace {

constexpr const char* section = "Kestal";
constexpr const char* lastJob = "LastJob";

} // namespace

void JobDesk::take(const QString& file) {
    current_.open(QFileInfo(file).absoluteFilePath());
    for (const QString& fault : current_.faults)
        host_->log.write("Job " + file + ": " + fault);
    host_->placeListFolder(current_.job->text("JobPath"));
    if (changed)
        changed();
}

void JobDesk::remember(const QString& file) {
    try {
        writeSetting(host_->paths.settings.toStdString(), section, lastJob, file.toStdString());
    } catch (const std::exception& error) {
        host_->log.write(QString("The setting %1 is not stored: %2").arg(lastJob, error.what()));
    }
}

void JobDesk::open(const QString& file) {
    take(file);
    const QFileInfo opened(file);
    remember(opened.absoluteFilePath());
    host_->setDataPath(opened.absolutePath());
}

void JobDesk::create(const QString& file) {
    createJob(file.toStdString());
    open(file);
}

void JobDesk::close() {
    current_.close();
    remember({});
    host_->placeListFolder({});
    if (changed)
        changed();
}

void JobDesk::reopenLast() {
    if (!truthOf(host_->genPrefs->value("LoadLastJob")))
        return;
    try {
        const auto file =
            QString::fromStdString(readSetting(host_->paths.settings.toStdString(), section, lastJob, ""));
        if (!file.isEmpty() && QFileInfo(file).isFile())
            take(file);
    } catch (const std::exception& error) {
        host_->log.write(QString("The last job is not opened: %1").arg(error.what()));
    }
}

void JobDesk::chooseFromList(IDispatch* mainForm) {
    const auto selected = Ref<JobObject>::adopt(new JobObject);
    if (component_.listJobs(*selected.get(), current_, mainForm))
        open(QString::fromStdString(selected->fullName()));
}

} // namespace kestal
