#include "backup/export_memory.h"

#include "base/app_folders.h"
#include "base/error.h"

#include <QCryptographicHash>
#include <QFileInfo>

namespace {
// So many at a time: each transaction waits for the disk, and what a killed run has not written down is only
// looked at again.
constexpr std::size_t writtenTogether = 500;

QString canonical(const QString &folder)
{
    const QFileInfo info(folder);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}
} // namespace

ExportMemory::ExportMemory(const QString &targetFolder) : m_folder(canonical(targetFolder))
{
    const QString path = appDataFolder().filePath(QStringLiteral("exports.db"));
    try {
        open(path);
    } catch (const Error &error) {
        qWarning("What was exported before is not known: %s", error.what());
        m_database.close();
    }
}

void ExportMemory::open(const QString &path)
{
    m_database.openThrow(path, SqliteOpen::ReadWriteCreate);
    // Another run holds the lock for a moment; whoever waits longer does without.
    if (!m_database.exec(QStringLiteral(
            "pragma busy_timeout=1000; pragma synchronous=off;"
            "create table if not exists exported(folder TEXT NOT NULL, place TEXT NOT NULL,"
            " source BLOB NOT NULL, size INTEGER NOT NULL, PRIMARY KEY(folder, place)) without rowid")))
        throw Error(QStringLiteral("can not open %1. %2").arg(path, m_database.lastError()));
}

ExportMemory::~ExportMemory()
{
    writeDown();
}

QByteArray ExportMemory::sourceOf(const BackupInfo &backup, QByteArrayView domain,
                                  QByteArrayView relativePath)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData((backup.deviceId.isEmpty() ? backupUid(backup.folder) : backup.deviceId).toUtf8());
    hash.addData(QByteArrayView("\n"));
    hash.addData(domain);
    hash.addData(QByteArrayView("-"));
    hash.addData(relativePath);
    return hash.result();
}

std::optional<ExportMemory::Entry> ExportMemory::at(const QString &place)
{
    if (!m_database.isOpen())
        return std::nullopt;
    try {
        Sqlite3Cursor &row = m_database.cachedThrow(
            Sqlite3Sql(QStringLiteral("select source, size from exported where folder=? and place=?"))
                .addTextParam(m_folder)
                .addTextParam(place));
        if (row.moveNext())
            return Entry{row.getBlob(0), row.getInt64(1)};
    } catch (const Error &error) {
        qWarning("What was exported before is not known: %s", error.what());
        m_database.close();
    }
    return std::nullopt;
}

void ExportMemory::remember(const QString &place, const Entry &entry)
{
    m_new.push_back({place, entry});
    if (m_new.size() >= writtenTogether)
        writeDown();
}

void ExportMemory::writeDown()
{
    const std::vector<New> all = std::exchange(m_new, {});
    if (all.empty() || !m_database.isOpen())
        return;
    try {
        Sqlite3Transaction transaction(m_database);
        for (const New &each : all)
            m_database.executeCachedThrow(
                Sqlite3Sql(QStringLiteral("insert or replace into exported(folder,place,source,size) "
                                          "values(?,?,?,?)"))
                    .addTextParam(m_folder)
                    .addTextParam(each.place)
                    .addBlobParam(each.entry.source)
                    .addInt64Param(each.entry.sizeBytes));
        transaction.commit();
    } catch (const Error &error) {
        qWarning("What was exported will not be known: %s", error.what());
        m_database.close();
    }
}
