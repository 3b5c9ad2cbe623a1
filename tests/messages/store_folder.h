#pragma once

#include "messages/local_message_store.h"

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QTest>

/// A local database's folder that a test looks into.
class StoreFolder
{
public:
    QString path() const { return m_folder.filePath(QStringLiteral("Sammlung \u00e4")); }
    QString store() const { return LocalMessageStore::pathIn(path()); }
    QString recycleStore() const { return MessageRecycleDb::pathIn(path()); }

    /// The first value of a statement's first row, as text.
    QString value(const QString &sql, const QString &database = {}) const
    {
        Sqlite3DB db;
        db.openThrow(database.isEmpty() ? store() : database, SqliteOpen::ReadWrite);
        Sqlite3Cursor row = db.queryThrow(sql);
        return row.moveNext() ? row.getText(0) : QString();
    }
    void run(const QString &script) const
    {
        Sqlite3DB db;
        db.openThrow(store(), SqliteOpen::ReadWrite);
        if (!db.exec(script))
            QFAIL(qPrintable(db.lastError()));
    }

    /// Every row of every table, but for the row counters, and every file beside the databases.
    QStringList content() const
    {
        QStringList lines;
        for (const QString &database : {store(), recycleStore()}) {
            if (!QFile::exists(database))
                continue;
            Sqlite3DB db;
            db.openThrow(database, SqliteOpen::ReadWrite);
            for (const char *table : {"message", "chat", "handle", "attachment", "chat_message_join",
                                      "chat_handle_join", "message_attachment_join"}) {
                Sqlite3Cursor row =
                    db.queryThrow(QStringLiteral("select rowid, * from %1").arg(QLatin1String(table)));
                while (row.moveNext()) {
                    QString line = QFileInfo(database).fileName() + u' ' + QLatin1String(table);
                    for (int i = 0; i < row.count(); ++i)
                        line += u'|' + row.getText(i);
                    lines << line;
                }
            }
        }
        return lines + files();
    }
    QStringList files() const
    {
        QStringList found;
        QDirIterator walk(path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const QString file = QDir(path()).relativeFilePath(walk.next());
            // A journal is the database's own business: the next one to open it looks after it.
            if (!file.endsWith(QStringLiteral(".db")) && !file.endsWith(QStringLiteral(".db-journal")))
                found << file;
        }
        found.sort();
        return found;
    }

    /// What SQLite finds wrong with a database; "ok" when nothing.
    QString faults(const QString &database) const
    {
        const QString dangling =
            value(QStringLiteral("select group_concat(\"table\") from pragma_foreign_key_check"), database);
        return dangling.isEmpty() ? value(QStringLiteral("pragma integrity_check"), database) : dangling;
    }

private:
    QTemporaryDir m_folder;
};
