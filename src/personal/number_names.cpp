#include "personal/number_names.h"

#include "backup/device_database.h"
#include "base/error.h"
#include "personal/contact_functions.h"
#include "sqlite/sqlite3_db.h"

namespace {
constexpr qsizetype valuesOfAPerson = 5; // a guess that saves growing step by step

QHash<qint64, QString> readPersonNames(const Sqlite3DB &db)
{
    QHash<qint64, QString> names;
    Sqlite3Cursor row = db.queryThrow(QStringLiteral("select rowid, first, middle, last from ABPerson"));
    while (row.moveNext())
        names.insert(row.getInt64(0), personName(row.getText(1), row.getText(2), row.getText(3)));
    return names;
}
} // namespace

NumberNames::NumberNames(FileSource &source)
{
    // Calls without names are better than no calls.
    try {
        Sqlite3DB db;
        if (!openDeviceDatabase(db, source,
                                {QStringLiteral("HomeDomain"),
                                 QStringLiteral("Library/AddressBook/AddressBook.sqlitedb")}))
            return;
        const QHash<qint64, QString> persons = readPersonNames(db);
        m_names.reserve(persons.size() * valuesOfAPerson);
        Sqlite3Cursor row =
            db.queryThrow(QStringLiteral("select record_id, value from ABMultiValue order by rowid"));
        while (row.moveNext()) {
            const auto person = persons.constFind(row.getInt64(0));
            if (person != persons.constEnd())
                m_names.insert(numberSuffix(row.getText(1)), *person);
        }
    } catch (const Error &error) {
        qWarning("no names for the calls: %s", error.what());
    }
}

QString NumberNames::nameOfNumber(const QString &address) const
{
    // Values of every kind have an entry, so what has no suffix would be named after somebody at random.
    const QString suffix = numberSuffix(address);
    return suffix.isEmpty() ? QString() : m_names.value(suffix);
}
