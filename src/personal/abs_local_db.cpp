#include "personal/abs_local_db.h"

#include "base/error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

AbsLocalDb::AbsLocalDb(const QString &folder, const QString &fileName, const QString &script)
    : m_path(QDir(folder).filePath(fileName)), m_script(script)
{
}

void AbsLocalDb::open()
{
    if (m_db.isOpen())
        return;
    if (!QDir().mkpath(QFileInfo(m_path).path()))
        throw Error(QStringLiteral("can not create %1").arg(QFileInfo(m_path).path()));
    openFile();
}

bool AbsLocalDb::openExisting()
{
    if (!m_db.isOpen() && !QFile::exists(m_path))
        return false;
    if (!m_db.isOpen())
        requireContent(m_path);
    open();
    return true;
}

void AbsLocalDb::requireContent(const QString &path)
{
    if (const QFileInfo file(path); file.isFile() && file.size() == 0)
        throw Error(QStringLiteral("%1 has 0 bytes: its content is lost, or was never written.").arg(path),
                    ErrorKind::Damaged, FileAccess::Reading);
}

void AbsLocalDb::openFile()
{
    m_db.openThrow(m_path, SqliteOpen::ReadWriteCreate);
    auto closeOnFailure = qScopeGuard([this] { m_db.close(); });
    prepare();
    Sqlite3Transaction transaction(m_db);
    if (isEmpty())
        createTables();
    upgrade();
    transaction.commit();
    closeOnFailure.dismiss();
}

bool AbsLocalDb::isEmpty() const
{
    Sqlite3Cursor tables = m_db.queryThrow(QStringLiteral("select count(*) from sqlite_master"));
    return tables.moveNext() && tables.getInt(0) == 0;
}

void AbsLocalDb::createTables()
{
    QFile script(m_script);
    if (!script.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(m_script, script.errorString()));
    if (!m_db.exec(QString::fromUtf8(script.readAll())))
        throw Error(QStringLiteral("can not create %1. %2").arg(m_path, m_db.lastError()));
}
