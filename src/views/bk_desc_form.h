#pragma once

#include "backup/backup_info.h"

#include <QWidget>

/// Describes one backup: the device, its system, the date and where the backup lies.
class BKDescForm : public QWidget
{
    Q_OBJECT

public:
    explicit BKDescForm(const BackupInfo &backup, QWidget *parent = nullptr);

public slots:
    void openBackupFolder(QString folder);
};

/// The first 40 characters and "..." of a longer name.
QString shortBackupName(const QString &displayName);
