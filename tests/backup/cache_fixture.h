#pragma once

#include "backup/backup_fixture.h"
#include "backup/cache_folder.h"
#include "base/file_names.h"
#include "sqlite/sqlite3_db.h"

#include <QTest>

/// A sample backup that is opened with a cache, as often as one likes.
class CacheFixture : public BackupFixture
{
public:
    explicit CacheFixture(const SampleOptions &options = {}) : BackupFixture(options)
    {
        removeFolderTree(folderOfCopies());
    }
    ~CacheFixture() { removeFolderTree(folderOfCopies()); }

    std::unique_ptr<BackupManifest> openedWithCache() const
    {
        auto backup = opened();
        backup->attachCache();
        return backup;
    }

    QString folderOfCopies() const { return cacheFolderPath(backupUid(folder())); }
    QString copyOf(const QString &virtualPath) const
    {
        return folderOfCopies() + QLatin1Char('/') + virtualPath;
    }
    QString registerFile() const { return copyOf(QStringLiteral("manifest.db")); }

    /// Rows of the register for a file, as texts.
    QStringList rowsOf(const SourceFile &file) const
    {
        Sqlite3DB db;
        db.openThrow(registerFile());
        Sqlite3Cursor row = db.queryThrow(
            Sqlite3Sql(QStringLiteral("select last_date from manifest where file_name=?"))
                .addTextParam(QString::fromLatin1(fileId(file.domain.toUtf8(), file.relativePath.toUtf8()))));
        QStringList rows;
        while (row.moveNext())
            rows << row.getText(0);
        return rows;
    }
    QString dateOf(const SourceFile &file) const
    {
        return QString::number(summary.file(file.domain, file.relativePath)->modified);
    }
};

/// Changes the content of a file and leaves its time, so that only one who reads it anew can tell.
inline void forge(const QString &path, const QByteArray &content)
{
    const QDateTime time = QFileInfo(path).lastModified();
    writeFile(path, content);
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite) || !file.setFileTime(time, QFileDevice::FileModificationTime))
        qFatal("%s keeps no time", qUtf8Printable(path));
}
