#pragma once

#include <QAbstractTableModel>
#include <QDateTime>

#include <vector>

namespace kestal {

/// The files of a folder as a table: name, kind, date and size. Hidden files and sub-folders are left out.
class ReportModel : public QAbstractTableModel {
public:
    enum Column { Name, Kind, Date, Size, ColumnCount };
    /// What a column is sorted by.
    static constexpr int SortRole = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    void setFolder(const QString& folder);
    QString path(int row) const { return files_.at(static_cast<std::size_t>(row)).path; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : ColumnCount;
    }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct File {
        QString path;
        QString name;
        qint64 size;
        QDateTime date;
    };
    std::vector<File> files_;
};

} // namespace kestal
