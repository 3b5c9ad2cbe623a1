#pragma once

#include "personal/abs_local_db.h"
#include "personal/contact_combine_rule.h"
#include "personal/contact_record.h"

#include <QHash>

#include <optional>

class Report;

/// "contacts.db": contacts gathered from any number of sources, those of one full name merged into one.
class LocalContactsDb : public AbsLocalDb
{
public:
    explicit LocalContactsDb(const QString &folder);

    struct Saved
    {
        qint64 id = 0;
        bool merged = false;
        qint64 replaced = 0; // entries (a note, a picture, a label) in whose place the record's own stand now
    };

    /// Of those that readAll() gives. Throws Error where the store is damaged.
    qint64 count();
    /// By ascending id. Reads around damage, which is told in the report: what is left of a contact is one.
    QList<ContactRecord> readAll(Report &report);
    std::optional<ContactRecord> read(qint64 id);

    /// Merges the record into the stored contact of the same full name, or adds it. A contact without a name
    /// is told apart by its organisation, then by its first number or address. Call between begin() and
    /// commit().
    Saved save(const ContactRecord &record, const AbsContactCombineRule &rule);
    /// False when there is no such contact.
    bool remove(qint64 id);

private:
    /// What save() looks contacts up by, loaded once.
    struct Names
    {
        bool loaded = false;
        QHash<QString, qint64> byFoldedName;
        QHash<QString, qint64> byNamelessKey;
    };
    Names m_names;

    /// The stored rows of one kind of a contact, which may be hundreds of thousands: those of equal values
    /// are found without walking over the others.
    class StoredRows
    {
    public:
        explicit StoredRows(QList<ContactDataRow> &rows) : m_rows(rows) {}

        /// Null when there is none.
        ContactDataRow *first();
        /// The first that holds the same as `row` in these columns; null when none does.
        ContactDataRow *find(const AbsContactCombineRule::Columns &columns, const ContactDataRow &row);
        void append(ContactDataRow row);

    private:
        QList<ContactDataRow> &m_rows;
        AbsContactCombineRule::Columns m_columns;
        QHash<QString, qsizetype> m_places;

        void remember(qsizetype place);
    };

    void loadNames();
    qint64 findByName(const QString &fullName);
    qint64 findNameless(const ContactRecord &record);
    qint64 addContact(const ContactRecord &record);
    qint64 groupId(const QString &name);
    void insertRow(qint64 contactId, ContactDataKind kind, ContactDataRow &row);
    void updateRow(ContactDataKind kind, const ContactDataRow &row);
    /// True when what the stored row had was replaced by something else.
    bool mergeRow(qint64 contactId, ContactDataKind kind, const ContactDataRow &row, StoredRows &stored,
                  const AbsContactCombineRule &rule);
    void saveGroups(qint64 contactId, const ContactRecord &record, QList<ContactDataRow> &stored);
};
