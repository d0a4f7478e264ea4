#pragma once

#include "host/option_records.h"
#include "host/record_object.h"
#include "hostif/database.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace kestal {

/// The job that the user works in: its database and what the host knows of it. Without an open job the
/// objects are null.
class CurrentJob {
public:
    bool isOpen() const { return bool(job); }
    /// Opens a job file in place of the present one, also one without a record of details. A field that the
    /// job lacks, or Null, leaves the default; so does a value that the record cannot take, which is then
    /// named in `faults`. A file that cannot be opened leaves everything as it is and throws genutil::Error,
    /// which names file and reason.
    void open(const QString& path);
    void close() { *this = {}; }
    /// A recordset of the options of the open job. AutomationError, which names the table and the job's file,
    /// where the job has none.
    Ref<IDispatch> openOptions(OptionRecords kind) const;
    /// Whether any point has a name.
    bool hasAlphaIds() const;

    Ref<JobObject> job;
    Ref<RecordObject> jobDetails, jobCfg, jobGeneral;
    Ref<IDispatch> database, detailsRset;
    std::shared_ptr<genutil::Database> tables; ///< the same database, for the host's own reading
    QStringList faults;

private:
    void readDetails();
    void deriveDisplays();
    void readField(RecordObject& record, const std::string& field);
};

} // namespace kestal
