#pragma once

#include "messages/ios5_message_db.h"
#include "old_messages.h"
#include "sample/keyed_archive.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <limits>

/// A database under construction and, once it is loaded, what the reader makes of it.
class OldCase
{
public:
    OldCase() : made(std::make_unique<OldMessages>(folder.filePath(QStringLiteral("sms.db")))) {}

    /// Closes the database under construction and loads it whole.
    IOS5MessageDb &load(FileSource *source = nullptr)
    {
        made.reset();
        db = std::make_unique<IOS5MessageDb>(folder.filePath(QStringLiteral("sms.db")), source);
        db->setNumbers(normalised, QStringLiteral("US"));
        db->loadChats();
        db->loadMessages(0, progress);
        return *db;
    }
    /// Null when it was not loaded.
    const _MsgMessage *message(qint64 rowid) const
    {
        for (const MessageRef &ref : all())
            if (ref.message->rowid == rowid)
                return ref.message;
        return nullptr;
    }
    std::vector<MessageRef> all() const
    {
        return db->select({}, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    }

    QTemporaryDir folder;
    std::unique_ptr<OldMessages> made;
    std::unique_ptr<IOS5MessageDb> db;
    NoProgress progress;

private:
    // Keeps digits; a German number gets its country in front.
    static QString normalised(const QString &address, const QString &country)
    {
        if (address.contains(QRegularExpression(QStringLiteral("[a-zA-Z@]"))))
            return address.toLower();
        QString number = address;
        number.remove(QRegularExpression(QStringLiteral("[^0-9+]")));
        const bool isNational = country == u"de" && number.startsWith(u'0');
        return isNational ? QStringLiteral("+49") + number.mid(1) : number;
    }
};

/// An archived array, of plain strings or of objects that wrap them.
inline QByteArray archivedList(const QStringList &texts, bool wrapped)
{
    using sample::PlistValue;
    sample::KeyedArchive archive;
    PlistValue::Array items;
    for (const QString &text : texts)
        items.emplace_back(wrapped ? archive.add(PlistValue::Dictionary{{QStringLiteral("NS.string"), text}})
                                   : archive.add(text));
    return archive.finish(archive.add(
        PlistValue::Dictionary{{QStringLiteral("NS.objects"), items},
                               {QStringLiteral("$class"), archive.addClass({QStringLiteral("NSArray")})}}));
}
