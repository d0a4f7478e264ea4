#include "host/job_panel.h"

#include "host/current_job.h"

#include <QDir>

namespace kestal {
namespace {

constexpr qsizetype longestText = 600; // characters

QString shown(QString text) {
    text = text.trimmed();
    if (text.isEmpty())
        return QString(QChar(0x2013));
    if (text.size() > longestText)
        text = text.left(longestText) + QChar(0x2026);
    return text.toHtmlEscaped().replace("\r\n", "<br>").replace('\n', "<br>");
}

QString coordinateSystem(int type) {
    static constexpr const char* names[] = {"Plane", "Grid projection", "Geographic"};
    return type >= 0 && type < 3 ? names[type] : "";
}

// A number that is not known is -1.
QString count(const RecordObject& record, const char* field) {
    const std::int32_t number = int32Of(record.value(field));
    return number < 0 ? QString() : QString::number(number);
}

QString table(const std::vector<std::pair<const char*, QString>>& rows) {
    QString html = "<table width='100%' cellpadding='3'>";
    for (const auto& [label, text] : rows)
        html += QString("<tr><td width='36%'><b>%1</b></td><td>%2</td></tr>").arg(label, shown(text));
    return html + "</table>";
}

} // namespace

QString jobPage(const CurrentJob& job) {
    const auto text = [](const RecordObject& record, const char* field) {
        return QString::fromStdString(record.text(field));
    };
    const RecordObject& details = *job.jobDetails.get();
    const RecordObject& cfg = *job.jobCfg.get();
    const QString name = text(*job.job.get(), "JobName") + text(*job.job.get(), "JobExtension");
    const int type = int16Of(cfg.value("CoordType"));
    const QString zone = int16Of(cfg.value("Zone")) == 0 ? QString() : text(cfg, "Zone");
    return "<h2>" + shown(name) + "</h2>" +
           table({{"Description", text(details, "Description")}, {"Surveyor", text(details, "Surveyor")},
               {"Date", text(details, "Date")}, {"Reference", text(details, "Reference")}}) +
           "<hr>" +
           table({{"Coordinates", coordinateSystem(type)}, {"Projection", text(cfg, "Projection")},
               {"Zone", zone}, {"Horizontal datum", text(cfg, "DatumH")},
               {"Vertical datum", text(cfg, "DatumV")}, {"Spheroid", text(cfg, "Spheroid")},
               {"Points", count(*job.jobGeneral.get(), "ValidHorizPts")}}) +
           "<hr>" + table({{"Folder", QDir::toNativeSeparators(text(*job.job.get(), "JobPath"))}});
}

JobPanel::JobPanel() {
    setObjectName("txtJob");
    setAccessibleName("Current job");
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    constexpr int margin = 12;
    document()->setDocumentMargin(margin);
}

void JobPanel::showJob(const CurrentJob& job) {
    setHtml(job.isOpen() ? jobPage(job) : "<p align='center'><br>No job is open</p>");
}

} // namespace kestal
