#include "personal/number_names.h"

#include "backup/device_database.h"
#include "base/error.h"
#include "personal/contact_functions.h"
#include "sqlite/read_rows.h"

namespace {
constexpr qsizetype valuesOfAPerson = 5; // a guess that saves growing step by step
constexpr int phoneProperty = 3;

const SourceFile addressBook{QStringLiteral("HomeDomain"),
                             QStringLiteral("Library/AddressBook/AddressBook.sqlitedb")};

QHash<qint64, QString> readPersonNames(const Sqlite3DB &db, Report &report)
{
    const TableRows rows{
        .table = QStringLiteral("ABPerson"),
        .columns = {QStringLiteral("First"), QStringLiteral("Middle"), QStringLiteral("Last")}};
    QHash<qint64, QString> names;
    readRows(db, rows, report, [&names](const Sqlite3Cursor &row) {
        return [&] {
            names.insert(row.getInt64(0), personName(row.getText(1), row.getText(2), row.getText(3)));
        };
    });
    return names;
}

Error damageOf(const Sqlite3DB &db)
{
    return Error(db.damage(), ErrorKind::Damaged, FileAccess::Reading).at(db.name());
}

bool isNumber(const QString &suffix)
{
    return !suffix.isEmpty() && suffix.front().isDigit() && suffix.back().isDigit();
}

std::optional<qint64> ownerIn(const QHash<QString, qint64> &owners, const QString &key)
{
    const auto found = owners.constFind(key);
    return found == owners.constEnd() ? std::nullopt : std::optional(*found);
}
} // namespace

NumberNames::NumberNames(FileSource &source, const NumberNormaliser &normalise, Report &report)
    : m_normalise(normalise)
{
    // Calls and messages without names are better than none.
    try {
        Sqlite3DB db;
        if (!openDeviceDatabase(db, source, addressBook))
            return;
        db.checkPages();
        if (!db.damage().isEmpty())
            report.add("IDS_ISSUE_NAMES_OF_NUMBERS", damageOf(db));
        readAddressBook(db, report);
    } catch (const Error &error) {
        report.add("IDS_ISSUE_NAMES_OF_NUMBERS", error);
    }
}

void NumberNames::readAddressBook(const Sqlite3DB &db, Report &report)
{
    m_names = readPersonNames(db, report);
    m_ownerOfNumber.reserve(m_names.size());
    m_ownerOfSuffix.reserve(m_names.size());
    m_ownerOfOther.reserve(m_names.size() * valuesOfAPerson);
    const TableRows rows{
        .table = QStringLiteral("ABMultiValue"),
        .columns = {QStringLiteral("record_id"), QStringLiteral("property"), QStringLiteral("value")}};
    readRows(db, rows, report, [this](const Sqlite3Cursor &row) {
        return [this, &row] { addValue(row.getInt64(1), row.getInt(2), row.getText(3)); };
    });
}

void NumberNames::addValue(qint64 person, int property, const QString &value)
{
    const QString suffix = numberSuffix(value);
    if (suffix.isEmpty() || !m_names.contains(person))
        return;
    if (property != phoneProperty) {
        m_ownerOfOther.insert(suffix, person);
        return;
    }
    m_ownerOfNumber.insert(m_normalise(value, {}), person);
    m_ownerOfSuffix.insert(suffix, person);
}

std::optional<NumberNames::Person> NumberNames::person(std::optional<qint64> rowid) const
{
    return rowid ? std::optional(Person{*rowid, m_names.value(*rowid)}) : std::nullopt;
}

std::optional<NumberNames::Person> NumberNames::ownerOfNumber(const QString &number) const
{
    const QString suffix = numberSuffix(number);
    if (suffix.isEmpty())
        return std::nullopt;
    if (const auto exact = ownerIn(m_ownerOfNumber, m_normalise(number, {})))
        return person(exact);
    return isNumber(suffix) ? person(ownerIn(m_ownerOfSuffix, suffix)) : std::nullopt;
}

QString NumberNames::nameOfNumber(const QString &address) const
{
    if (const auto owner = ownerOfNumber(address))
        return owner->name;
    // What has no suffix would be named after somebody at random.
    const QString suffix = numberSuffix(address);
    const auto owner = suffix.isEmpty() ? std::nullopt : ownerIn(m_ownerOfOther, suffix);
    return owner ? m_names.value(*owner) : QString();
}
