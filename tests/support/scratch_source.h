#pragma once

#include "backup/file_source.h"
#include "base/error.h"
#include "sqlite/sqlite3_db.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// A source whose files lie in a temporary folder, as DOMAIN/relative/path.
class ScratchSource : public FileSource
{
public:
    QString pathOf(const SourceFile &file) const
    {
        return m_folder.filePath(file.domain + QLatin1Char('/') + file.relativePath);
    }

    void put(const SourceFile &file, const QByteArray &content) const
    {
        const QString path = pathOf(file);
        QDir().mkpath(QFileInfo(path).path());
        QFile target(path);
        if (!target.open(QIODevice::WriteOnly) || target.write(content) != content.size())
            throw Error(QStringLiteral("can not write %1").arg(path));
    }

    /// Makes a database out of a script.
    void putDatabase(const SourceFile &file, const QString &script) const
    {
        put(file, {});
        QFile::remove(pathOf(file));
        Sqlite3DB db;
        db.openThrow(pathOf(file), SqliteOpen::ReadWriteCreate);
        if (!db.exec(script))
            throw Error(db.lastError());
    }

    void remove(const SourceFile &file) const { QFile::remove(pathOf(file)); }

    bool hasContent(const SourceFile &file) const override { return QFile::exists(pathOf(file)); }

    std::optional<QString> fetchDatabase(const SourceFile &file) override
    {
        return hasContent(file) ? std::optional(pathOf(file)) : std::nullopt;
    }

    void fetchTo(const SourceFile &file, const QString &destination, const CopyProgress &) override
    {
        QDir().mkpath(QFileInfo(destination).path());
        if (!QFile::copy(pathOf(file), destination))
            throw Error(QStringLiteral("can not open %1").arg(pathOf(file)));
    }

    SourceFile fileOfDevicePath(const QString &) const override { return {}; }
    QString fetchForViewing(const SourceFile &file) override { return pathOf(file); }

private:
    QTemporaryDir m_folder;
};
