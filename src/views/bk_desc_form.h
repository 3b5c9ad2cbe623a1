#pragma once

#include "backup/backup_info.h"

#include <QWidget>

class NoticeBar;
class Report;

/// Describes one backup: the device, its system, the date and where the backup lies.
class BKDescForm : public QWidget
{
    Q_OBJECT

public:
    explicit BKDescForm(const BackupInfo &backup, QWidget *parent = nullptr);

    /// What of the backup cannot be read, told above the rest.
    void setReport(const Report &report);

public slots:
    void openBackupFolder(QString folder);

private:
    NoticeBar *m_notices;
};

/// The first 40 characters and "..." of a longer name.
QString shortBackupName(const QString &displayName);
