#include "backup/loose_database.h"

#include "backup/file_cipher.h"
#include "sqlite/sqlite3_db.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace {
// What has not reached the database yet, or has to be taken back from it.
constexpr const char *companions[] = {"-wal", "-journal"};
} // namespace

LooseDatabaseSource::LooseDatabaseSource(const QString &folder, const QString &deviceFolder)
    : FolderSource(folder), m_deviceFolder(deviceFolder + u'/'), m_scratch(QStringLiteral("loose"))
{
}

QString LooseDatabaseSource::copyOf(const QString &database)
{
    m_guard.emplace(QStringList{database, folder() + QStringLiteral("/Attachments")});
    qint64 size = QFileInfo(database).size();
    for (const char *companion : companions)
        size += QFileInfo(database + QLatin1String(companion)).size();
    const QString copy = QStringLiteral("%1/%2").arg(m_scratch.withRoomFor(static_cast<std::uint64_t>(size)),
                                                     QFileInfo(database).fileName());
    copyFile(database, copy);
    m_takenAt = std::max(m_takenAt, QFileInfo(database).lastModified().toSecsSinceEpoch());
    bool hasCompanion = false;
    for (const char *companion : companions) {
        const QString path = database + QLatin1String(companion);
        if (!QFileInfo(path).isFile())
            continue;
        copyFile(path, copy + QLatin1String(companion));
        hasCompanion = true;
    }
    if (hasCompanion)
        Sqlite3DB().openThrow(copy, SqliteOpen::ReadWrite); // lets SQLite tidy up
    return copy;
}

SourceFile LooseDatabaseSource::fileOfDevicePath(const QString &devicePath) const
{
    if (!devicePath.startsWith(m_deviceFolder))
        return {};
    const SourceFile file{QString(), devicePath.mid(m_deviceFolder.size())};
    return hasContent(file) ? file : SourceFile();
}
