#include "host/report_model.h"

#include "host/report_kinds.h"

#include <QDir>
#include <QLocale>

namespace kestal {

void ReportModel::setFolder(const QString& folder) {
    beginResetModel();
    files_.clear();
    for (const QFileInfo& info : QDir(folder).entryInfoList(QDir::Files, QDir::Name | QDir::IgnoreCase))
        files_.push_back({info.absoluteFilePath(), info.fileName(), info.size(), info.lastModified()});
    endResetModel();
}

int ReportModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(files_.size());
}

QVariant ReportModel::data(const QModelIndex& index, int role) const {
    const File& file = files_.at(static_cast<std::size_t>(index.row()));
    if (role == Qt::TextAlignmentRole && index.column() == Size)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole && index.column() == Name)
        return "<qt>" + QDir::toNativeSeparators(file.path).toHtmlEscaped() + "</qt>";
    if (role != Qt::DisplayRole && role != SortRole)
        return {};
    switch (index.column()) {
    case Name:
        return file.name;
    case Kind:
        return QString(reportKindOf(file.name).label);
    case Size:
        return role == SortRole ? QVariant(file.size) : QLocale().formattedDataSize(file.size);
    case Date:
        return role == SortRole ? QVariant(file.date) : file.date.toString("d MMM yyyy  hh:mm");
    default:
        return {};
    }
}

QVariant ReportModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static constexpr const char* titles[ColumnCount] = {"Name", "Kind", "Date", "Size"};
    if (orientation != Qt::Horizontal || section >= ColumnCount)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue((section == Size ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? QVariant(QString(titles[section])) : QVariant();
}

} // namespace kestal
