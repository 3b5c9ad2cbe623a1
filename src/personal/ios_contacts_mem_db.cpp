#include "personal/ios_contacts_mem_db.h"

#include "backup/device_database.h"
#include "base/error.h"
#include "personal/contact_functions.h"

#include <QDebug>

namespace {
// Shorter numbers are service numbers: too many of them end alike.
constexpr qsizetype shortestComparable = 7;

const SourceFile addressBookFile{QStringLiteral("HomeDomain"),
                                 QStringLiteral("Library/AddressBook/AddressBook.sqlitedb")};
const SourceFile imagesFile{QStringLiteral("HomeDomain"),
                            QStringLiteral("Library/AddressBook/AddressBookImages.sqlitedb")};

void logFailure(const Error &error)
{
    qWarning().noquote() << QStringLiteral("create IOSContactsMemDb error. %1").arg(error.sentence());
}

QString comparableSuffix(const QString &number)
{
    const QString suffix = numberSuffix(number);
    const bool isNumber = !suffix.isEmpty() && suffix.front().isDigit() && suffix.back().isDigit();
    return isNumber && suffix.size() >= shortestComparable ? suffix : QString();
}
} // namespace

IOSContactsMemDb::IOSContactsMemDb(FileSource &source, const NumberNormaliser &normalise)
{
    try {
        build(source, normalise);
    } catch (const Error &error) {
        logFailure(error);
        m_personBySuffix.clear();
        m_db.close();
    }
}

void IOSContactsMemDb::build(FileSource &source, const NumberNormaliser &normalise)
{
    Sqlite3DB addressBook;
    if (!openDeviceDatabase(addressBook, source, addressBookFile))
        throw Error(QStringLiteral("Cannot find AddressBook.sqlitedb"), ErrorKind::NotFound);
    createIndex();
    Sqlite3Transaction transaction(m_db);
    addPersons(addressBook);
    addNumbers(addressBook, normalise);
    try {
        addPhotos(source);
    } catch (const Error &error) {
        logFailure(error); // names are worth more than pictures
    }
    transaction.commit();
}

void IOSContactsMemDb::createIndex()
{
    static const QString schema =
        QStringLiteral("CREATE TABLE person(  rowid INTEGER PRIMARY KEY,  first TEXT,  last TEXT,  middle "
                       "TEXT,  photo BLOB);"
                       "CREATE TABLE tel(  person_id INTEGER,  number TEXT,  UNIQUE(person_id, number));"
                       "CREATE INDEX index_tel_number on tel(number);");
    if (!m_folder.isValid())
        throw Error(QStringLiteral("can not create %1. %2").arg(m_folder.path(), m_folder.errorString()));
    m_db.openThrow(m_folder.filePath(QStringLiteral("ct-phone.db")), SqliteOpen::ReadWriteCreate);
    // The index never outlives this object, so nothing has to survive a crash.
    if (!m_db.exec(QStringLiteral("pragma journal_mode=memory; pragma synchronous=off;")) ||
        !m_db.exec(schema))
        throw m_db.failure(QStringLiteral("can not create %1. %2"));
}

void IOSContactsMemDb::addPersons(const Sqlite3DB &addressBook)
{
    static const QString insertSql =
        QStringLiteral("insert into person(rowid, first, last, middle) values(?,?,?,?)");
    Sqlite3Cursor persons =
        addressBook.queryThrow(QStringLiteral("select rowid, first, last, middle from ABPerson"));
    Sqlite3Cursor insert = m_db.queryThrow(insertSql);
    while (persons.moveNext()) {
        insert.rebind(Sqlite3Sql(insertSql)
                          .addInt64Param(persons.getInt64(0))
                          .addTextParam(persons.getText(1))
                          .addTextParam(persons.getText(2))
                          .addTextParam(persons.getText(3)));
        insert.moveNext();
    }
}

void IOSContactsMemDb::addNumbers(const Sqlite3DB &addressBook, const NumberNormaliser &normalise)
{
    static const QString insertSql = QStringLiteral("replace into tel(person_id, number) values(?,?)");
    Sqlite3Cursor values =
        addressBook.queryThrow(QStringLiteral("select record_id, value from ABMultiValue where property=3"));
    Sqlite3Cursor insert = m_db.queryThrow(insertSql);
    while (values.moveNext()) {
        const qint64 person = values.getInt64(0);
        const QString stored = values.getText(1);
        const QString number = normalise(stored, QString());
        if (number.isEmpty())
            continue;
        insert.rebind(Sqlite3Sql(insertSql).addInt64Param(person).addTextParam(number));
        insert.moveNext();
        const QString suffix = comparableSuffix(stored);
        if (suffix.isEmpty())
            continue;
        const auto known = m_personBySuffix.find(suffix);
        if (known == m_personBySuffix.end())
            m_personBySuffix.insert(suffix, person);
        else
            *known = qMin(*known, person);
    }
}

void IOSContactsMemDb::addPhotos(FileSource &source)
{
    static const QString updateSql = QStringLiteral("update person set photo=? where rowid=?");
    Sqlite3DB images;
    if (!openDeviceDatabase(images, source, imagesFile))
        return;
    Sqlite3Cursor thumbnails =
        images.queryThrow(QStringLiteral("select record_id, data from ABThumbnailImage"));
    Sqlite3Cursor update = m_db.queryThrow(updateSql);
    while (thumbnails.moveNext()) {
        update.rebind(
            Sqlite3Sql(updateSql).addBlobParam(thumbnails.getBlob(1)).addInt64Param(thumbnails.getInt64(0)));
        update.moveNext();
    }
}

std::optional<ContactName> IOSContactsMemDb::find(const QString &normalisedNumber) const
{
    if (!m_db.isOpen() || normalisedNumber.isEmpty())
        return {};
    static const QString byNumber = QStringLiteral(
        "select p.* from person as p inner join tel as t on p.rowid=t.person_id and t.number=?");
    if (auto person = first(Sqlite3Sql(byNumber).addTextParam(normalisedNumber)))
        return person;
    const auto known = m_personBySuffix.constFind(comparableSuffix(normalisedNumber));
    if (known == m_personBySuffix.constEnd())
        return {};
    return first(
        Sqlite3Sql(QStringLiteral("select p.* from person as p where p.rowid=?")).addInt64Param(*known));
}

std::optional<ContactName> IOSContactsMemDb::first(const Sqlite3Sql &sql) const
{
    Sqlite3Cursor cursor = m_db.queryThrow(sql);
    if (!cursor.moveNext())
        return {};
    const auto text = [&](const char16_t *column) { return cursor.getText(QString::fromUtf16(column)); };
    return ContactName{personName(text(u"first"), text(u"middle"), text(u"last")),
                       cursor.getBlob(QStringLiteral("photo"))};
}
