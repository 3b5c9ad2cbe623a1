#pragma once

#include "backup/file_source.h"
#include "base/error.h"
#include "sqlite/sqlite3_db.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdlib>

namespace bench {

/// A device with a few databases, each made by a script.
class DeviceFiles : public FileSource
{
public:
    QString pathOf(const SourceFile &file) const { return m_folder.filePath(file.relativePath); }

    void put(const SourceFile &file, const QString &script) const
    {
        const QString path = pathOf(file);
        QDir().mkpath(QFileInfo(path).path());
        Sqlite3DB db;
        db.openThrow(path, SqliteOpen::ReadWriteCreate);
        if (!db.exec(QStringLiteral("begin;") + script + QStringLiteral(";commit"))) {
            qCritical("%s", qPrintable(db.lastError()));
            std::abort();
        }
    }

    bool hasContent(const SourceFile &file) const override { return QFileInfo::exists(pathOf(file)); }
    std::optional<QString> fetchDatabase(const SourceFile &file) override
    {
        return hasContent(file) ? std::optional(pathOf(file)) : std::nullopt;
    }
    void fetchTo(const SourceFile &file, const QString &, const CopyProgress &) override
    {
        throw Error(QStringLiteral("%1 is not copied here").arg(file.relativePath));
    }
    SourceFile fileOfDevicePath(const QString &) const override { return {}; }
    QString fetchForViewing(const SourceFile &file) override { return pathOf(file); }

private:
    QTemporaryDir m_folder;
};

} // namespace bench
