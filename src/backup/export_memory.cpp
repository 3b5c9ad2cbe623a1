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

QByteArray hashOf(const QString &folder, const QString &place)
{
    return QCryptographicHash::hash((folder + QLatin1Char('\0') + place).toUtf8(),
                                    QCryptographicHash::Sha256);
}

constexpr char16_t writeOne[] = u"insert or replace into written(place,source,size) values(?,?,?)";
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
            "create table if not exists written(place BLOB PRIMARY KEY, source BLOB NOT NULL,"
            " size INTEGER NOT NULL) without rowid")))
        throw Error(QStringLiteral("can not open %1. %2").arg(path, m_database.lastError()));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    if (m_database.hasTable(QStringLiteral("exported")))
        takeOverNames();
}

/// An earlier version kept the names themselves. They are not left in pages that are free.
void ExportMemory::takeOverNames()
{
    Sqlite3Transaction transaction(m_database);
    {
        Sqlite3Cursor row =
            m_database.queryThrow(QStringLiteral("select folder, place, source, size from exported"));
        while (row.moveNext())
            m_database.executeCachedThrow(Sqlite3Sql(QString::fromUtf16(writeOne))
                                              .addBlobParam(hashOf(row.getText(0), row.getText(1)))
                                              .addBlobParam(row.getBlob(2))
                                              .addInt64Param(row.getInt64(3)));
    }
    m_database.executeThrow(QStringLiteral("drop table exported"));
    transaction.commit();
    if (!m_database.exec(QStringLiteral("vacuum")))
        qWarning("Old names of exported files are not wiped out: %s", qUtf8Printable(m_database.lastError()));
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
            Sqlite3Sql(QStringLiteral("select source, size from written where place=?"))
                .addBlobParam(hashOf(m_folder, place)));
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
    m_new.push_back({hashOf(m_folder, place), entry});
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
                Sqlite3Sql(QString::fromUtf16(writeOne))
                    .addBlobParam(each.place)
                    .addBlobParam(each.entry.source)
                    .addInt64Param(each.entry.sizeBytes));
        transaction.commit();
    } catch (const Error &error) {
        qWarning("What was exported will not be known: %s", error.what());
        m_database.close();
    }
}
