#pragma once

#include "sqlite/sqlite3_db.h"

#include <QFile>
#include <QtEndian>

/// The pages of a database file, to be damaged; what was done to them is written back in the end.
class DatabasePages
{
public:
    explicit DatabasePages(const QString &path) : m_file(path)
    {
        if (m_file.open(QIODevice::ReadOnly))
            bytes = m_file.readAll();
        m_file.close();
        pageSize = qFromBigEndian<quint16>(bytes.constData() + 16);
    }
    ~DatabasePages()
    {
        if (m_file.open(QIODevice::WriteOnly))
            m_file.write(bytes);
    }
    DatabasePages(const DatabasePages &) = delete;
    DatabasePages &operator=(const DatabasePages &) = delete;

    /// Pages are counted from 1.
    QByteArray page(qint64 number) const { return bytes.mid((number - 1) * pageSize, pageSize); }
    void setPage(qint64 number, const QByteArray &content)
    {
        bytes.replace((number - 1) * pageSize, pageSize, content);
    }
    void destroy(qint64 number) { setPage(number, QByteArray(pageSize, '\xee')); }
    qint64 numberAt(qint64 page, qint64 offset, int size) const
    {
        const char *at = bytes.constData() + (page - 1) * pageSize + offset;
        return size == 4   ? qFromBigEndian<quint32>(at)
               : size == 2 ? qFromBigEndian<quint16>(at)
                           : quint8(*at);
    }

    QByteArray bytes;
    qint64 pageSize;

private:
    QFile m_file;
};

inline qint64 rootPageOf(const QString &path, const QString &table)
{
    Sqlite3DB db;
    db.openThrow(path);
    Sqlite3Cursor row = db.queryThrow(
        Sqlite3Sql(QStringLiteral("select rootpage from sqlite_master where name=? collate nocase"))
            .addTextParam(table));
    return row.moveNext() ? row.getInt64(0) : 0;
}

/// The pages of one table or index, in the order of its rows.
struct DatabaseTree
{
    DatabaseTree(const DatabasePages &pages, qint64 root) { descend(pages, root, true); }

    QList<qint64> inner; // without the root
    QList<qint64> leaves;

private:
    void descend(const DatabasePages &pages, qint64 page, bool isRoot)
    {
        constexpr int leafOfTable = 13, leafOfIndex = 10;
        const qint64 kind = pages.numberAt(page, 0, 1);
        if (kind == leafOfTable || kind == leafOfIndex) {
            leaves.append(page);
            return;
        }
        if (!isRoot)
            inner.append(page);
        for (int cell = 0; cell < pages.numberAt(page, 3, 2); ++cell)
            descend(pages, pages.numberAt(page, pages.numberAt(page, 12 + 2 * cell, 2), 4), false);
        descend(pages, pages.numberAt(page, 8, 4), false);
    }
};
