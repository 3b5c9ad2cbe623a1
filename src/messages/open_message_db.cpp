#include "messages/abs_message_db.h"

#include "backup/device_database.h"
#include "base/error.h"
#include "messages/ios5_message_db.h"
#include "messages/ios6_message_db.h"

namespace {
const SourceFile messagesFile{QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db")};

QSet<QString> tableNames(const DatabaseFile &file)
{
    Sqlite3DB db;
    db.openForeign(file);
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
    const std::optional<QString> path = fetchDeviceDatabase(source, messagesFile);
    if (!path)
        throw Error(QStringLiteral("Found no message database file in this iTunes backup."),
                    ErrorKind::NotFound);
    return openMessageDbFile({*path, messagesFile.display()}, &source);
}

qint64 countMessages(FileSource &source, Report &report)
{
    const std::unique_ptr<AbsMessageDb> messages = openMessageDb(source);
    const qint64 count = messages->countMessages();
    messages->checkContent();
    report.merge(messages->report());
    return count;
}

std::unique_ptr<AbsMessageDb> openMessageDbFile(const DatabaseFile &file, FileSource *source)
{
    static const QSet<QString> newerTables{QStringLiteral("chat"), QStringLiteral("handle"),
                                           QStringLiteral("chat_handle_join"), QStringLiteral("message"),
                                           QStringLiteral("chat_message_join")};
    const QSet<QString> tables = tableNames(file);
    if (!tables.contains(QStringLiteral("message")))
        throw Error(QStringLiteral("%1 is no message database: it has no table \"message\".")
                        .arg(file.name.isEmpty() ? file.path : file.name),
                    ErrorKind::Damaged, FileAccess::Reading)
            .at(file.name);
    std::unique_ptr<AbsIOSMessageDb> db;
    if (tables.contains(newerTables))
        db = std::make_unique<IOS6MessageDb>(file, source, ContactNames::FromAddressBook);
    else
        db = std::make_unique<IOS5MessageDb>(file, source);
    useCountries(*db);
    return db;
}
