#pragma once

#include "base/error.h"
#include "base/report.h"
#include "messages/abs_message_db.h"
#include "personal/number_normaliser.h"
#include "sqlite/sqlite3_db.h"

#include <QHash>

class IOSContactsMemDb;

/// Where the names of handles come from.
enum class ContactNames {
    None,            // there are none
    FromAddressBook, // the device's, out of the file source
    AsStored, // in the columns `_ct_name` and `_photo` of a local store, which keeps the attachments too
};

/// What the readers of the message databases of all generations have in common: the open database and what it
/// has, the normalising and naming of handles, where attachments lie.
class AbsIOSMessageDb : public AbsMessageDb
{
public:
    ~AbsIOSMessageDb() override;

    /// Set before loadChats(): how the addresses of handles are normalised, and the country of those without
    /// one. Until then no country is known.
    void setNumbers(NumberNormaliser normalise, const QString &defaultCountry);

protected:
    /// Without an Essential listing there is nothing to show.
    enum class Listing { Essential, Extra };

    /// Counts rows and asks now and then whether the user wants to stop.
    class RowWatch
    {
    public:
        explicit RowWatch(Progress &progress) : m_progress(progress) {}
        void row();

    private:
        Progress &m_progress;
        int m_rows = 0;
    };

    friend void useCountries(AbsIOSMessageDb &db);

    /// Opens the database; throws Error. `source`, which may be null, must outlive this object.
    AbsIOSMessageDb(const DatabaseFile &file, FileSource *source, ContactNames names);

    bool hasTable(const QString &table) const;
    bool hasColumn(const QString &table, const QString &column) const;

    /// Notes what is known of the database before anything is read: that it was cut off, what it lacks.
    /// Called by the constructors of the readers, and by clear().
    virtual void noteDamage();
    /// Notes damage of the database.
    void addIssue(const char *what, const QString &reason = {});
    /// Notes how many messages stand in missing conversations alone, once for a database: counting and
    /// loading may both find it out.
    void noteMissingChats(qint64 messages);
    /// Notes which tables and columns are missing that every device of the generation has.
    void requireColumns(const std::vector<std::pair<const char *, std::vector<const char *>>> &tables);

    /// Runs a reading. When it meets damage, it is run once more on what can be read of the database, the
    /// rest of which is noted: it must change nothing to be run twice.
    template <typename Read>
    auto aroundDamage(Read read)
    {
        if (!m_db.damage().isEmpty() && !m_isMended)
            mendDatabase();
        try {
            return read();
        } catch (const Error &error) {
            if (!canMend(error))
                throw;
        }
        mendDatabase();
        return read();
    }
    /// True when rows of a table were lost by that.
    bool hasLost(const QString &table) const { return m_incomplete.contains(table); }

    /// Runs a listing, inside of aroundDamage(). What damage is left then ends it early and keeps what was
    /// read before; when nothing at all can be read, that is a failure of an Essential one. `prepare`
    /// resolves the columns and gives what is to be done for each row.
    template <typename Prepare>
    void forEachRow(Listing listing, const QString &sql, Prepare prepare)
    {
        qint64 rows = 0;
        try {
            Sqlite3Cursor cursor = m_db.queryThrow(sql);
            auto takeRow = prepare(cursor);
            for (; cursor.moveNext(); ++rows)
                takeRow();
        } catch (const Error &error) {
            if (canMend(error) || (rows == 0 && listing == Listing::Essential))
                throw;
            addIssue("IDS_ISSUE_MESSAGE_LISTINGS", error.sentence());
        }
    }

    /// Forgets every record.
    virtual void clear();
    /// Sorts the lists of chats, of their handles and messages, and of attachments, and drops what is in them
    /// twice; chatId as in loadMessages().
    void sortChats();
    void sortMessages(qint64 chatId);
    /// Null when the source has no address book that names are taken from.
    std::unique_ptr<IOSContactsMemDb> openContacts();
    /// Normalises the address and gives it its name; `contacts` may be null.
    void nameHandle(_MsgHandle &handle, const IOSContactsMemDb *contacts) const;
    QString normalised(const QString &address, const QString &country) const;
    /// Gives a message without text the one of its attributed body.
    void takeTextOfBody(_MsgMessage &message);
    /// Says where the file of an attachment is that was just read.
    virtual void placeAttachment(_MsgAttachment &attachment) const;

    Sqlite3DB m_db;
    FileSource *m_source;
    ContactNames m_names;
    QHash<qint64, _MsgMessage *> m_messageById;
    QHash<qint64, _MsgAttachment *> m_attachmentById;

private:
    bool canMend(const Error &error) const { return error.kind() == ErrorKind::Damaged && !m_isMended; }
    void mendDatabase();

    bool m_isMended = false;
    QSet<QString> m_incomplete;
    Report m_lost; // by mending
    NumberNormaliser m_normalise;
    QString m_defaultCountry;
    QHash<QString, QString> m_createTexts; // by table name in lower case
};

/// Normalises by the rules of all countries. Without the countries data numbers are still cleaned of
/// punctuation, which is no reason to show no messages.
void useCountries(AbsIOSMessageDb &db);
