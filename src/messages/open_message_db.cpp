#include "messages/abs_message_db.h"

#include "base/error.h"
#include "messages/device_database.h"
#include "messages/ios5_message_db.h"
#include "messages/ios6_message_db.h"

namespace {
QSet<QString> tableNames(const QString &path)
{
    Sqlite3DB db;
    openDeviceDatabase(db, path);
    QSet<QString> names;
    Sqlite3Cursor cursor = db.queryThrow(QStringLiteral("select * from sqlite_master where type='table'"));
    const int name = cursor.columnIndex(QStringLiteral("name"));
    while (cursor.moveNext())
        names.insert(cursor.getText(name).toLower());
    return names;
}
} // namespace

std::unique_ptr<AbsMessageDb> openMessageDb(FileSource &source)
{
    const std::optional<QString> path =
        source.fetchDatabase({QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db")});
    if (!path)
        throw Error(QStringLiteral("Found no message database file in this iTunes backup."));
    return openMessageDbFile(*path, &source);
}

std::unique_ptr<AbsMessageDb> openMessageDbFile(const QString &path, FileSource *source)
{
    static const QSet<QString> newerTables{QStringLiteral("chat"), QStringLiteral("handle"),
                                           QStringLiteral("chat_handle_join"), QStringLiteral("message"),
                                           QStringLiteral("chat_message_join")};
    const QSet<QString> tables = tableNames(path);
    if (!tables.contains(QStringLiteral("message")))
        throw Error(QStringLiteral("%1 is no message database: it has no table \"message\".").arg(path));
    std::unique_ptr<AbsIOSMessageDb> db;
    if (tables.contains(newerTables))
        db = std::make_unique<IOS6MessageDb>(path, source, ContactNames::FromAddressBook);
    else
        db = std::make_unique<IOS5MessageDb>(path, source);
    useCountries(*db);
    return db;
}
