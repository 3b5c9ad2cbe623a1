#include "personal/local_contacts_db.h"

#include "base/report.h"
#include "personal/contact_words.h"
#include "sqlite/read_rows.h"

#include <array>
#include <map>
#include <utility>

namespace {
using Columns = AbsContactCombineRule::Columns;

/// The columns that the store keeps of a kind.
Columns storedColumns(ContactDataKind kind)
{
    switch (kind) {
    case ContactDataKind::Name:
        return {1, 2, 3, 4, 5, 6, 7, 8};
    case ContactDataKind::Photo:
        return {4, 15};
    case ContactDataKind::GroupMembership:
        return {1, 2};
    case ContactDataKind::Im:
        return {1, 2, 3, 5, 6};
    case ContactDataKind::Note:
        return {1};
    case ContactDataKind::Organization:
        return {1, 2, 3, 4, 5, 6, 7, 9};
    case ContactDataKind::PostalAddress:
        return {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    default:
        return {1, 2, 3};
    }
}

QStringList columnNames(const Columns &columns)
{
    QStringList names;
    for (const int column : columns)
        names.append(QStringLiteral("data%1").arg(column));
    return names;
}

void addValues(Sqlite3Sql &sql, const Columns &columns, const ContactDataRow &row)
{
    for (const int column : columns) {
        if (column != 15)
            sql.addTextParam(row.data(column));
        else if (row.data15.isEmpty())
            sql.addNullParam();
        else
            sql.addBlobParam(row.data15);
    }
}

bool isKnownKind(int type)
{
    return type >= 1 && type <= static_cast<int>(ContactDataKind::Website);
}

/// The data columns of a cursor over the table `data`, resolved once.
class RowReader
{
public:
    explicit RowReader(const Sqlite3Cursor &cursor)
        : m_id(cursor.columnIndex(QStringLiteral("_id"))), m_type(cursor.columnIndex(QStringLiteral("type")))
    {
        for (int i = 0; i < 15; ++i)
            m_data.at(static_cast<std::size_t>(i)) = cursor.columnIndex(QStringLiteral("data%1").arg(i + 1));
    }

    void into(ContactRecord &record, const Sqlite3Cursor &cursor) const
    {
        const int type = cursor.getInt(m_type);
        if (!isKnownKind(type))
            return;
        ContactDataRow row;
        row.id = cursor.getInt64(m_id);
        for (int column = 1; column <= ContactDataRow::textColumns; ++column)
            if (QString text = cursor.getText(m_data.at(static_cast<std::size_t>(column - 1)));
                !text.isEmpty())
                row.data(column) = std::move(text);
        row.data15 = cursor.getBlob(m_data.at(14));
        record.rows[static_cast<ContactDataKind>(type)].append(std::move(row));
    }

private:
    int m_id;
    int m_type;
    std::array<int, 15> m_data{};
};

/// What tells contacts without a name apart; empty when nothing does.
QString namelessKey(const ContactRecord &record)
{
    for (const ContactDataKind kind : {ContactDataKind::Organization, ContactDataKind::Phone,
                                       ContactDataKind::Email, ContactDataKind::PostalAddress})
        for (const ContactDataRow &row : record.rows.value(kind))
            if (!row.data(1).isEmpty())
                return QString::number(static_cast<int>(kind)) + QLatin1Char(':') + row.data(1).toLower();
    return {};
}

QString asciiFolded(const QString &name)
{
    QString folded = name;
    for (QChar &c : folded)
        if (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
            c = QChar(c.unicode() + ('a' - 'A'));
    return folded;
}

/// What a row holds in some columns, as one text.
QString valuesIn(const Columns &columns, const ContactDataRow &row)
{
    QString values;
    for (const int column : columns) {
        const QString value = column == 15 ? QString::fromLatin1(row.data15) : row.data(column);
        values += QString::number(value.size()) + QLatin1Char(':') + value;
    }
    return values;
}

void rememberName(QHash<QString, qint64> &ids, const QString &key, qint64 id)
{
    if (!key.isEmpty() && !ids.contains(key))
        ids.insert(key, id);
}
} // namespace

LocalContactsDb::LocalContactsDb(const QString &folder)
    : AbsLocalDb(folder, QStringLiteral("contacts.db"), QStringLiteral(":/res/local_contacts_db.sql"))
{
}

qint64 LocalContactsDb::count()
{
    Sqlite3Cursor row =
        m_db.queryThrow(QStringLiteral("select count(*) from (select _id from contact not indexed union "
                                       "select contact_id from data not indexed)"));
    return row.moveNext() ? row.getInt64(0) : 0;
}

QList<ContactRecord> LocalContactsDb::readAll(Report &report)
{
    std::map<qint64, ContactRecord> records;
    readRows(m_db, {QStringLiteral("contact"), {QStringLiteral("src_id")}}, report,
             [&records](const Sqlite3Cursor &row) {
                 return [&records, &row] { records[row.getInt64(0)].src_id = row.getText(1); };
             });
    const TableRows data{.table = QStringLiteral("data"), .need = TableRows::Need::Expected};
    readRows(m_db, data, report, [&records](const Sqlite3Cursor &row) {
        const int contact = row.columnIndex(QStringLiteral("contact_id"));
        return [&records, &row, contact, reader = RowReader(row)] {
            reader.into(records[row.getInt64(contact)], row);
        };
    });
    QList<ContactRecord> list;
    list.reserve(static_cast<qsizetype>(records.size()));
    for (auto &[id, record] : records) {
        record.id = id;
        list.append(std::move(record));
    }
    return list;
}

std::optional<ContactRecord> LocalContactsDb::read(qint64 id)
{
    Sqlite3Cursor &contact = m_db.cachedThrow(
        Sqlite3Sql(QStringLiteral("select src_id from contact where _id=?")).addInt64Param(id));
    if (!contact.moveNext())
        return std::nullopt;
    ContactRecord record;
    record.id = id;
    record.src_id = contact.getText(0);
    contact.reset();
    Sqlite3Cursor &row = m_db.cachedThrow(
        Sqlite3Sql(QStringLiteral("select * from data where contact_id=?")).addInt64Param(id));
    const RowReader reader(row);
    while (row.moveNext())
        reader.into(record, row);
    row.reset();
    return record;
}

// LIKE cannot use an index, so a name without wildcards is looked up in a table of all names: folded as LIKE
// folds them, which is for ASCII letters only, and the lowest id first. A name with a NUL is looked up there
// too, since LIKE would compare no further than that.
qint64 LocalContactsDb::findByName(const QString &fullName)
{
    const bool hasWildcard = fullName.contains(QLatin1Char('%')) || fullName.contains(QLatin1Char('_'));
    if (hasWildcard && !fullName.contains(QChar(0))) {
        Sqlite3Cursor &row = m_db.cachedThrow(
            Sqlite3Sql(QStringLiteral("select _id,src_id from contact where full_name%1 limit 1")
                           .arg(m_db.likeCondition(fullName)))
                .addTextParam(fullName));
        return row.moveNext() ? row.getInt64(0) : 0;
    }
    loadNames();
    return m_names.byFoldedName.value(asciiFolded(fullName));
}

void LocalContactsDb::loadNames()
{
    if (std::exchange(m_names.loaded, true))
        return;
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select _id, full_name from contact order by _id"));
    while (row.moveNext()) {
        const qint64 id = row.getInt64(0);
        const QString name = row.getText(1);
        if (!name.isEmpty())
            rememberName(m_names.byFoldedName, asciiFolded(name), id);
        else if (const auto stored = read(id))
            rememberName(m_names.byNamelessKey, namelessKey(*stored), id);
    }
}

qint64 LocalContactsDb::findNameless(const ContactRecord &record)
{
    loadNames();
    const QString key = namelessKey(record);
    return key.isEmpty() ? 0 : m_names.byNamelessKey.value(key);
}

qint64 LocalContactsDb::addContact(const ContactRecord &record)
{
    const QString fullName = displayNameOf(record);
    m_db.executeCachedThrow(Sqlite3Sql(QStringLiteral("insert into contact(src_id,full_name) values(?,?)"))
                                .addTextParam(record.src_id)
                                .addTextParam(fullName));
    const qint64 id = m_db.lastInsertId();
    for (ContactDataRow row : record.rows.value(ContactDataKind::Name))
        insertRow(id, ContactDataKind::Name, row);
    loadNames();
    if (fullName.isEmpty())
        rememberName(m_names.byNamelessKey, namelessKey(record), id);
    else
        rememberName(m_names.byFoldedName, asciiFolded(fullName), id);
    return id;
}

qint64 LocalContactsDb::groupId(const QString &name)
{
    Sqlite3Cursor row = m_db.queryThrow(
        Sqlite3Sql(QStringLiteral("select _id from contact_group where name") + m_db.likeCondition(name))
            .addTextParam(name));
    if (row.moveNext())
        return row.getInt64(0);
    m_db.executeThrow(
        Sqlite3Sql(QStringLiteral("insert into contact_group(name) values(?)")).addTextParam(name));
    return m_db.lastInsertId();
}

void LocalContactsDb::insertRow(qint64 contactId, ContactDataKind kind, ContactDataRow &row)
{
    const Columns columns = storedColumns(kind);
    Sqlite3Sql sql(
        QStringLiteral("insert into data(contact_id,type,src_id,%1) values(?,?,?%2)")
            .arg(columnNames(columns).join(QLatin1Char(',')), QStringLiteral(",?").repeated(columns.size())));
    sql.addInt64Param(contactId).addIntParam(static_cast<int>(kind)).addNullParam();
    addValues(sql, columns, row);
    m_db.executeCachedThrow(sql);
    row.id = m_db.lastInsertId();
}

void LocalContactsDb::updateRow(ContactDataKind kind, const ContactDataRow &row)
{
    const Columns columns = storedColumns(kind);
    Sqlite3Sql sql(QStringLiteral("update data set src_id=?,%1=? where _id=?")
                       .arg(columnNames(columns).join(QStringLiteral("=?,"))));
    sql.addNullParam();
    addValues(sql, columns, row);
    sql.addInt64Param(row.id);
    m_db.executeCachedThrow(sql);
}

LocalContactsDb::Saved LocalContactsDb::save(const ContactRecord &record, const AbsContactCombineRule &rule)
{
    const QString fullName = displayNameOf(record);
    const qint64 found = fullName.isEmpty() ? findNameless(record) : findByName(fullName);
    ContactRecord stored;
    if (found != 0)
        stored = read(found).value_or(ContactRecord());
    Saved saved{found != 0 ? found : addContact(record), found != 0};
    for (auto kind = record.rows.constBegin(); kind != record.rows.constEnd(); ++kind) {
        StoredRows rows(stored.rows[kind.key()]);
        for (const ContactDataRow &row : kind.value())
            saved.replaced += mergeRow(saved.id, kind.key(), row, rows, rule) ? 1 : 0;
    }
    saveGroups(saved.id, record, stored.rows[ContactDataKind::GroupMembership]);
    return saved;
}

bool LocalContactsDb::mergeRow(qint64 contactId, ContactDataKind kind, const ContactDataRow &row,
                               StoredRows &stored, const AbsContactCombineRule &rule)
{
    const Columns match = rule.matchColumns(kind, row);
    if (match.isEmpty())
        return false;
    const AbsContactCombineRule::Merge merge = rule.mergeColumns(kind);
    ContactDataRow fresh;
    ContactDataRow *const known = merge.single ? stored.first() : stored.find(match, row);
    ContactDataRow *const target = known ? known : &fresh;
    if (equalIn(merge.columns, *target, row))
        return false;
    bool hasReplaced = false;
    const auto take = [&hasReplaced](auto &there, const auto &incoming) {
        if (incoming.isEmpty() || incoming == there)
            return;
        hasReplaced = hasReplaced || !there.isEmpty();
        there = incoming;
    };
    for (const int column : merge.columns) {
        if (column == 15)
            take(target->data15, row.data15);
        else if (!row.data(column).isEmpty())
            take(target->data(column), row.data(column));
    }
    if (known) {
        updateRow(kind, *target);
        return hasReplaced;
    }
    insertRow(contactId, kind, fresh);
    stored.append(std::move(fresh));
    return false;
}

ContactDataRow *LocalContactsDb::StoredRows::first()
{
    return m_rows.isEmpty() ? nullptr : &m_rows.first();
}

ContactDataRow *LocalContactsDb::StoredRows::find(const Columns &columns, const ContactDataRow &row)
{
    if (columns != m_columns) {
        m_columns = columns;
        m_places.clear();
        for (qsizetype i = 0; i < m_rows.size(); ++i)
            remember(i);
    }
    const auto place = m_places.constFind(valuesIn(columns, row));
    return place == m_places.constEnd() ? nullptr : &m_rows[*place];
}

void LocalContactsDb::StoredRows::append(ContactDataRow row)
{
    m_rows.append(std::move(row));
    remember(m_rows.size() - 1);
}

void LocalContactsDb::StoredRows::remember(qsizetype place)
{
    const QString values = valuesIn(m_columns, m_rows.at(place));
    if (!m_places.contains(values))
        m_places.insert(values, place);
}

// A membership has no columns that the rule could match: it is there once for each group.
void LocalContactsDb::saveGroups(qint64 contactId, const ContactRecord &record, QList<ContactDataRow> &stored)
{
    StoredRows rows(stored);
    for (ContactDataRow row : record.rows.value(ContactDataKind::GroupMembership)) {
        row.data(1) = QString::number(groupId(row.data(2)));
        if (rows.find({1}, row))
            continue;
        insertRow(contactId, ContactDataKind::GroupMembership, row);
        rows.append(std::move(row));
    }
}

bool LocalContactsDb::remove(qint64 id)
{
    m_db.executeCachedThrow(
        Sqlite3Sql(QStringLiteral("delete from data where contact_id=?")).addInt64Param(id));
    const bool hadRows = m_db.changes() > 0;
    m_db.executeCachedThrow(Sqlite3Sql(QStringLiteral("delete from contact where _id=?")).addInt64Param(id));
    m_names = {};
    return m_db.changes() > 0 || hadRows;
}
