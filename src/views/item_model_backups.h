#pragma once

#include "backup/backup_info.h"

#include <QAbstractListModel>

/// The backups that the load dialog offers: the name, and below it the device, its system, the date and
/// whether a password is needed.
class ItemModelBackups : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { DescriptionRole = Qt::UserRole, FolderRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    void setBackups(const QList<BackupInfo> &backups);
    void append(const BackupInfo &backup);
    const BackupInfo &backup(int row) const { return m_backups.at(row); }
    /// -1 when the folder is not listed.
    int rowOf(const QString &folder) const;

private:
    QList<BackupInfo> m_backups;
};
