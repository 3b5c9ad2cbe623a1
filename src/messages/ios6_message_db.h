#pragma once

#include "messages/abs_message_db.h"
#include "messages/record_date.h"
#include "personal/number_normaliser.h"
#include "sqlite/sqlite3_db.h"

#include <QHash>

class IOSContactsMemDb;

/// Where the names of handles come from.
enum class ContactNames {
    FromAddressBook, // the device's, out of the file source
    AsStored,        // in the columns `_ct_name` and `_photo` of a local store
};

/// Reads the message database of iOS 6 and later, and the local message store, whose schema is a copy of it.
/// Adapts to the columns that the file has. Messages that belong to no conversation are neither counted nor
/// loaded; loading the same conversation twice changes nothing.
class IOS6MessageDb : public AbsMessageDb
{
public:
    /// Opens the database; throws Error. `source` may be null: attachments have no file then and nobody a
    /// name out of the address book. It must outlive this object.
    IOS6MessageDb(const QString &path, FileSource *source, ContactNames names);

    /// Set before loadChats(): how the addresses of handles are normalised, and the country of those without
    /// one. Until then no country is known.
    void setNumbers(NumberNormaliser normalise, const QString &defaultCountry);

    int kind() const override { return 6; }
    qint64 countMessages() override;
    std::unordered_map<qint64, qint64> countMessagesByChat() override;
    void loadChats() override;
    void loadMessages(qint64 chatId, Progress &progress) override;

private:
    enum class Listing { Essential, Extra };

    bool hasTable(const QString &table) const;
    bool hasColumn(const QString &table, const QString &column) const;
    DateUnit dateUnit() const;
    QString listedMessages() const;
    template <typename Prepare>
    void forEachRow(Listing listing, const QString &sql, Prepare prepare);

    void clear();
    void readChats();
    void computeLastDates();
    void readHandles();
    void nameHandle(_MsgHandle &handle, const IOSContactsMemDb *contacts) const;
    void readMessages(qint64 chatId, Progress &progress);
    void completeMessage(_MsgMessage &message);
    void readAttachments(qint64 chatId, Progress &progress);
    void sortMessages(qint64 chatId);

    Sqlite3DB m_db;
    FileSource *m_source;
    ContactNames m_names;
    NumberNormaliser m_normalise;
    QString m_defaultCountry;
    QHash<QString, QString> m_createTexts; // by table name in lower case
    QHash<qint64, _MsgMessage *> m_messageById;
    QHash<qint64, _MsgAttachment *> m_attachmentById;
};
