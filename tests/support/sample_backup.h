#pragma once

#include "sample/sample_maker.h"
#include "work/open_backup.h"

#include <QTemporaryDir>

/// A sample backup in a folder of its own, gone with this object.
class SampleBackup
{
public:
    explicit SampleBackup(SampleOptions options = {}, const QString &name = QStringLiteral("sample"))
        : m_folder(m_parent.filePath(name))
    {
        options.folder = m_folder;
        m_summary = makeSample(options);
    }

    QString parentFolder() const { return m_parent.path(); }
    QString folder() const { return m_folder; }
    const SampleSummary &summary() const { return m_summary; }

    /// The backup with its description read.
    OpenBackupPtr described() const
    {
        auto backup = std::make_shared<OpenBackup>(m_folder);
        backup->manifest().loadInfo();
        return backup;
    }
    /// The backup with its index built; an encrypted one needs its password.
    OpenBackupPtr opened(const QString &password = {}) const
    {
        OpenBackupPtr backup = described();
        if (!password.isEmpty())
            backup->manifest().openEncrypted(password);
        NoProgress nobody;
        backup->manifest().buildIndex(nobody);
        return backup;
    }

private:
    QTemporaryDir m_parent;
    QString m_folder;
    SampleSummary m_summary;
};
