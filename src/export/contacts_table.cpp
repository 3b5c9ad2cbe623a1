#include "export/contacts_table.h"

#include "personal/contact_words.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <functional>

namespace {
struct Cell
{
    QString title;
    QString value;
};

QList<Cell> named(const ContactDataRow &row, std::initializer_list<std::pair<int, const char *>> columns)
{
    QList<Cell> cells;
    for (const auto &[column, title] : columns)
        cells.append({QString::fromLatin1(title), row.data(column)});
    return cells;
}

QList<Cell> typed(const char *prefix, ContactDataKind kind, const ContactDataRow &row, int typeColumn)
{
    return {{QLatin1String(prefix) + contactTypeWord(kind, row.data(typeColumn).toInt()), row.data(1)}};
}

QList<Cell> addressCells(const ContactDataRow &row)
{
    const QString prefix =
        QStringLiteral("Addr:") + contactTypeWord(ContactDataKind::PostalAddress, row.data(2).toInt());
    QList<Cell> cells =
        named(row, {{10, ":Country"}, {8, ":State"}, {7, ":City"}, {4, ":Street"}, {9, ":Postcode"}});
    for (Cell &cell : cells)
        cell.title.prepend(prefix);
    return cells;
}

QList<Cell> cellsOf(ContactDataKind kind, const ContactDataRow &row)
{
    switch (kind) {
    case ContactDataKind::Name:
        return named(row,
                     {{5, "Prefix"}, {2, "First Name"}, {4, "Middle Name"}, {3, "Last Name"}, {6, "Suffix"}});
    case ContactDataKind::Nickname:
        return named(row, {{1, "Nickname"}});
    case ContactDataKind::GroupMembership:
        return named(row, {{2, "Category"}});
    case ContactDataKind::Organization:
        return named(row, {{1, "Company"}, {5, "Department"}, {4, "Job Title"}});
    case ContactDataKind::Note:
        return named(row, {{1, "Notes"}});
    case ContactDataKind::Phone:
        return typed("Tel:", kind, row, 2);
    case ContactDataKind::Email:
        return typed("Email:", kind, row, 2);
    case ContactDataKind::Event:
        return typed("Date:", kind, row, 2);
    case ContactDataKind::Im:
        return typed("IM:", kind, row, 5);
    case ContactDataKind::Relation:
        return typed("Rel:", kind, row, 2);
    case ContactDataKind::Website:
        return typed("Url:", kind, row, 2);
    case ContactDataKind::PostalAddress:
        return addressCells(row);
    case ContactDataKind::Photo:
        return {};
    }
    return {};
}

// Titles that end alike share a rank whatever their type, so the parts of one address do not stay together.
int rankOf(const QString &title)
{
    static const QHash<QString, int> fixed{
        {QStringLiteral("Prefix"), 10},      {QStringLiteral("First Name"), 20},
        {QStringLiteral("Middle Name"), 30}, {QStringLiteral("Last Name"), 40},
        {QStringLiteral("Suffix"), 50},      {QStringLiteral("Nickname"), 51},
        {QStringLiteral("Category"), 60},    {QStringLiteral("Company"), 70},
        {QStringLiteral("Department"), 80},  {QStringLiteral("Job Title"), 90},
        {QStringLiteral("Notes"), 800}};
    static const std::pair<const char *, int> prefixes[] = {{"Tel:", 100}, {"Email:", 200}, {"Date:", 300},
                                                            {"IM:", 500},  {"Rel:", 600},   {"Url:", 700}};
    static const std::pair<const char *, int> addressParts[] = {
        {":Country", 401}, {":State", 402}, {":City", 403}, {":Street", 404}, {":Postcode", 405}};
    constexpr int last = 1000;
    if (const auto found = fixed.constFind(title); found != fixed.constEnd())
        return *found;
    for (const auto &[prefix, rank] : prefixes)
        if (title.startsWith(QLatin1String(prefix)))
            return rank;
    if (title.startsWith(QLatin1String("Addr:")))
        for (const auto &[suffix, rank] : addressParts)
            if (title.endsWith(QLatin1String(suffix)))
                return rank;
    return last;
}

void forEachCell(const ContactRecord &contact, const std::function<void(const Cell &)> &visit)
{
    for (auto kind = contact.rows.constBegin(); kind != contact.rows.constEnd(); ++kind)
        for (const ContactDataRow &row : kind.value())
            for (const Cell &cell : cellsOf(kind.key(), row))
                if (!cell.value.isEmpty())
                    visit(cell);
}
} // namespace

ContactsTable::ContactsTable(const QList<ContactRecord> &contacts)
{
    QSet<QString> known;
    for (const ContactRecord &contact : contacts)
        forEachCell(contact, [&](const Cell &cell) {
            if (known.contains(cell.title))
                return;
            known.insert(cell.title);
            m_titles.append(cell.title);
        });
    std::stable_sort(m_titles.begin(), m_titles.end(),
                     [](const QString &a, const QString &b) { return rankOf(a) < rankOf(b); });
}

QStringList ContactsTable::cells(const ContactRecord &contact) const
{
    QHash<QString, QString> values;
    forEachCell(contact, [&](const Cell &cell) {
        QString &value = values[cell.title];
        value += value.isEmpty() ? cell.value : QLatin1Char(';') + cell.value;
    });
    QStringList cells;
    for (const QString &title : m_titles)
        cells.append(values.value(title));
    return cells;
}
