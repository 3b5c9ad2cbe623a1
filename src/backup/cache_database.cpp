#include "backup/cache_database.h"

#include "base/error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

namespace {
// Another run holds the lock for the time of one row; whoever waits longer does without.
constexpr int waitForOthersMs = 1000;
} // namespace

CacheDatabase::CacheDatabase(const QString &path, const QString &script) : m_path(path), m_script(script) {}

bool CacheDatabase::change(const Action &action)
{
    return read([&action](Sqlite3DB &db) {
        db.beginTran();
        action(db);
        db.commitTran(); // closing after a failure rolls back
    });
}

bool CacheDatabase::read(const Action &action)
{
    for (const bool isLastTry : {false, true}) {
        try {
            open();
            action(m_db);
            return true;
        } catch (const Error &error) {
            qWarning("%s", error.what());
            const bool damaged = isDamaged();
            m_db.close();
            if (!damaged || isLastTry)
                break;
            removeFiles();
        }
    }
    return false;
}

void CacheDatabase::open()
{
    if (m_db.isOpen() && QFileInfo::exists(m_path))
        return;
    m_db.close();
    QDir().mkpath(QFileInfo(m_path).path());
    m_db.openThrow(m_path, SqliteOpen::ReadWriteCreate);
    // Names are looked up with "like": only when it minds the case can the index serve it.
    m_db.exec(QStringLiteral("pragma case_sensitive_like=on; pragma synchronous=off; pragma busy_timeout=%1")
                  .arg(waitForOthersMs));
    makeTables();
}

void CacheDatabase::makeTables()
{
    const auto isEmpty = [this] {
        Sqlite3Cursor tables = m_db.queryThrow(QStringLiteral("select count(*) from sqlite_master"));
        return tables.moveNext() && tables.getInt(0) == 0;
    };
    if (!isEmpty())
        return;
    Sqlite3Transaction transaction(m_db);
    QFile script(m_script);
    if (!script.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(m_script, script.errorString()));
    if (isEmpty() && !m_db.exec(QString::fromUtf8(script.readAll())))
        throw Error(QStringLiteral("can not create %1. %2").arg(m_path, m_db.lastError()));
    transaction.commit();
}

/// A statement that cannot even be prepared means that the tables are not those of the script.
bool CacheDatabase::isDamaged() const
{
    switch (m_db.lastErrorCode()) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR:
        return true;
    default:
        return false;
    }
}

void CacheDatabase::removeFiles() const
{
    for (const char *companion : {"", "-journal", "-wal", "-shm"})
        QFile::remove(m_path + QLatin1String(companion));
}
