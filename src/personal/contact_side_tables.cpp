#include "personal/contact_side_tables.h"

#include "base/report.h"
#include "personal/contact_words.h"
#include "sqlite/read_rows.h"

#include <algorithm>

namespace {
bool readTexts(const Sqlite3DB &db, const char *table, Report &report, QHash<qint64, QString> &texts)
{
    const TableRows rows{.table = QLatin1String(table),
                         .columns = {QStringLiteral("value")},
                         .need = TableRows::Need::Expected};
    return readRows(db, rows, report,
                    [&texts](const Sqlite3Cursor &row) {
                        return [&] { texts.insert(row.getInt64(0), row.getText(1)); };
                    })
        .isWhole;
}

QString imService(const QString &service)
{
    static const QHash<QString, int> numbers{
        {QStringLiteral("AIM"), 1},      {QStringLiteral("MSN"), 2},    {QStringLiteral("Yahoo"), 3},
        {QStringLiteral("Skype"), 4},    {QStringLiteral("QQ"), 5},     {QStringLiteral("GoogleTalk"), 6},
        {QStringLiteral("ICQ"), 7},      {QStringLiteral("Jabber"), 8}, {QStringLiteral("GaduGadu"), 10},
        {QStringLiteral("Facebook"), 11}};
    const auto found = numbers.constFind(service);
    return found == numbers.constEnd() ? QString() : QString::number(*found);
}
} // namespace

ContactLabels::ContactLabels(const Sqlite3DB &addressBook, Report &report)
{
    m_isWhole = readTexts(addressBook, "ABMultiValueLabel", report, m_texts);
}

const ContactLabels::Label *ContactLabels::find(ContactDataKind kind, qint64 rowid)
{
    static const Label other{QStringLiteral("0"), {}};
    const auto text = m_texts.constFind(rowid);
    if (text == m_texts.constEnd())
        return m_isWhole ? nullptr : &other;
    auto &ofKind = m_known[kind];
    auto known = ofKind.find(rowid);
    if (known == ofKind.end()) {
        Label label;
        label.type = QString::number(contactTypeOfLabel(kind, *text, label.custom));
        known = ofKind.insert(rowid, label);
    }
    return &*known;
}

ContactParts::ContactParts(const Sqlite3DB &addressBook, Scope scope, Report &report) : m_scope(scope)
{
    QHash<qint64, QString> keys;
    readTexts(addressBook, "ABMultiValueEntryKey", report, keys);
    for (QString &key : keys)
        key = key.toLower();
    const TableRows rows{
        .table = QStringLiteral("ABMultiValueEntry"),
        .columns = {QStringLiteral("parent_id"), QStringLiteral("key"), QStringLiteral("value")},
        .need = TableRows::Need::Expected};
    readRows(addressBook, rows, report, [&](const Sqlite3Cursor &row) {
        return [&] { m_parts.push_back({row.getInt64(1), keys.value(row.getInt64(2)), row.getText(3)}); };
    });
    std::stable_sort(m_parts.begin(), m_parts.end(),
                     [](const Part &a, const Part &b) { return a.value < b.value; });
}

template <typename Visit>
void ContactParts::forEach(qint64 uid, Visit visit) const
{
    auto part = std::lower_bound(m_parts.begin(), m_parts.end(), uid,
                                 [](const Part &part, qint64 wanted) { return part.value < wanted; });
    for (; part != m_parts.end() && part->value == uid; ++part)
        visit(*part);
}

void ContactParts::fillAddress(ContactDataRow &row, qint64 uid)
{
    static const QHash<QString, int> columns{{QStringLiteral("country"), 10},
                                             {QStringLiteral("state"), 8},
                                             {QStringLiteral("city"), 7},
                                             {QStringLiteral("street"), 4},
                                             {QStringLiteral("zip"), 9}};
    constexpr int countryCodeColumn = 11;
    forEach(uid, [&](const Part &part) {
        if (const int column = columns.value(part.key); column != 0)
            row.data(column) = part.text;
        else if (part.key != QLatin1String("countrycode"))
            ++m_withoutPlace;
        else if (m_scope == Scope::Everything)
            row.data(countryCodeColumn) = part.text;
        else
            ++m_countryCodes;
    });
    row.data(1) = composeAddress(row);
}

void ContactParts::fillInstantMessage(ContactDataRow &row, qint64 uid)
{
    forEach(uid, [&](const Part &part) {
        if (part.key == QLatin1String("service")) {
            row.data(5) = imService(part.text);
            m_unknownServices += row.data(5).isEmpty() && !part.text.isEmpty() ? 1 : 0;
        } else if (part.key == QLatin1String("username"))
            row.data(1) = part.text;
        else
            ++m_withoutPlace;
    });
}

void ContactParts::fillProfile(ContactDataRow &row, qint64 uid) const
{
    QString user;
    forEach(uid, [&](const Part &part) {
        if (part.key == QLatin1String("service"))
            row.data(3) = part.text;
        else if (part.key == QLatin1String("url"))
            row.data(1) = part.text;
        else if (part.key == QLatin1String("username"))
            user = part.text;
    });
    if (row.data(1).isEmpty())
        row.data(1) = user;
}

void ContactParts::reportLeftOut(const QString &where, Report &report) const
{
    if (m_countryCodes > 0)
        report.add({.kind = IssueKind::Hidden,
                    .what = "IDS_ISSUE_COUNTRY_CODES",
                    .where = where,
                    .count = m_countryCodes});
    if (m_withoutPlace > 0)
        report.add({.kind = IssueKind::LeftOut,
                    .what = "IDS_ISSUE_PARTS_OF_VALUES",
                    .where = where,
                    .count = m_withoutPlace});
    if (m_unknownServices > 0)
        report.add({.kind = IssueKind::LeftOut,
                    .what = "IDS_ISSUE_IM_SERVICES",
                    .where = where,
                    .count = m_unknownServices});
}
