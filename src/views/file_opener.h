#pragma once

#include "work/open_backup.h"

#include <QObject>

class BackgroundJob;

/// Opens single files of a backup with the programs that the desktop has for them.
class FileOpener : public QObject
{
    Q_OBJECT

public:
    explicit FileOpener(OpenBackupPtr backup, QObject *parent);
    ~FileOpener() override;

    /// Copies the file out and opens the copy; says so in a box when its name is not that of a picture, sound
    /// or film, when it is too large, cannot be copied, or is FileCatalogue::none (`withoutFile`).
    void open(FileCatalogue::Index file, const QString &withoutFile);

private:
    OpenBackupPtr m_backup;
    std::unique_ptr<BackgroundJob> m_job;
};
