#include "backup/catalogue_loader.h"

#include "backup/archived_record.h"
#include "backup/mbdb_parser.h"
#include "base/error.h"
#include "base/secret.h"
#include "base/texts.h"
#include "sqlite/read_rows.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <algorithm>

namespace {
constexpr qint64 rowsBetweenReports = 4096;
constexpr qsizetype descriptorKeySize = 16;

const QString filesTable = QStringLiteral("Files");
const QString domainColumn = QStringLiteral("domain");
const QString pathColumn = QStringLiteral("relativePath");
const QString recordColumn = QStringLiteral("file");

/// iOS 10.0 left the catalogue plain and encrypted each file record with a key made of the password and a
/// salt. Empty when there is no salt.
QByteArray descriptorKey(const Sqlite3DB &db, const QByteArray &password)
{
    if (password.isEmpty() || !db.hasTable(QStringLiteral("Properties")))
        return {};
    Sqlite3Cursor cursor = db.queryThrow(QStringLiteral("select * from Properties where key='salt' limit 1"));
    if (!cursor.moveNext())
        return {};
    const QByteArray salt = cursor.getBlob(QStringLiteral("value"));
    return QCryptographicHash::hash(password + salt, QCryptographicHash::Sha1).first(descriptorKeySize);
}

/// Bytes that stay where they are, without a copy.
QByteArray borrowed(QByteArrayView bytes)
{
    return QByteArray::fromRawData(bytes.data(), bytes.size());
}

bool isPlist(QByteArrayView bytes)
{
    return bytes.startsWith("bplist");
}

Error unreadable(const QString &sentence)
{
    return Error(sentence, ErrorKind::Damaged, FileAccess::Reading);
}

/// The row of the table Files that a statement stands on.
class FileRow
{
public:
    FileRow(const Sqlite3Cursor &cursor, const QByteArray &descriptorKey)
        : m_cursor(&cursor),
          m_domain(cursor.columnIndex(domainColumn)),
          m_path(cursor.columnIndex(pathColumn)),
          m_file(cursor.columnIndex(recordColumn)),
          m_descriptorKey(descriptorKey)
    {
    }

    /// False when the row tells less of its file's place than a device writes: it lost its domain, or what is
    /// no folder its path. A row with neither stands for no file.
    bool isPlaced(const FileRecord &record) const
    {
        const bool hasPath = !m_cursor->isNull(m_path);
        if (m_cursor->isNull(m_domain))
            return !hasPath;
        const int type = record.mode & modeTypeMask;
        return hasPath || (type != modeRegular && type != modeLink);
    }

    /// Its record, valid until the next row. False when there is none that can be read: what the columns say
    /// stands all the same. Throws Error when it cannot be decrypted.
    bool read(FileRecord &record)
    {
        record.domain = borrowed(m_cursor->viewText(m_domain));
        record.relativePath = borrowed(m_cursor->viewText(m_path));
        if (record.domain.isEmpty())
            return true;
        const QByteArrayView blob = m_cursor->viewBlob(m_file);
        if (m_descriptorKey.isEmpty() || isPlist(blob))
            return m_reader.read(blob, record);
        return m_reader.read(MBDBParser::decryptFileDesc(blob, m_descriptorKey), record);
    }

private:
    const Sqlite3Cursor *m_cursor;
    int m_domain;
    int m_path;
    int m_file;
    QByteArray m_descriptorKey;
    ArchivedRecordReader m_reader;
};

void requireFiles(const Sqlite3DB &db)
{
    if (!db.hasTable(filesTable))
        throw unreadable(QStringLiteral("can not read %1. It has no table %2.").arg(db.name(), filesTable));
    const QSet<QString> columns = db.tbCols(filesTable);
    for (const QString &column : {domainColumn, pathColumn})
        if (!columns.contains(column.toLower()))
            throw unreadable(QStringLiteral("can not read %1. Its table %2 has no column %3.")
                                 .arg(db.name(), filesTable, column));
}

/// How many entries an index of the table has: an emptied page of the table is no damage to SQLite. Takes a
/// hundredth of the time that the rows take; a look at every page of the file would take as long as they do.
/// Without an index it is the rows themselves.
qint64 countFiles(const Sqlite3DB &db)
{
    Sqlite3Cursor row = db.queryThrow(QStringLiteral("select count(*) from %1").arg(filesTable));
    return row.moveNext() ? row.getInt64(0) : 0;
}
} // namespace

CatalogueLoader::CatalogueLoader(FileCatalogue &catalogue, Progress &progress)
    : m_catalogue(catalogue), m_progress(progress)
{
}

Report CatalogueLoader::loadDatabase(const QString &path, const QByteArray &password)
{
    m_name = QStringLiteral("Manifest.db");
    if (QFileInfo(path).size() == 0)
        throw unreadable(QStringLiteral("can not read %1. The file is empty.").arg(m_name));
    Sqlite3DB db;
    db.openForeign({path, m_name}, SqliteOpen::Immutable);
    if (!db.damage().isEmpty())
        tellDamage(db.damage());
    requireFiles(db);
    QByteArray key = descriptorKey(db, password);
    const WipedAtEnd wiped(key);
    readFiles(db, key);
    return m_report;
}

void CatalogueLoader::readFiles(const Sqlite3DB &db, const QByteArray &descriptorKey)
{
    const PrepareRows prepare = [&](const Sqlite3Cursor &cursor) {
        return [this, row = FileRow(cursor, descriptorKey)]() mutable {
            countRow();
            FileRecord record;
            try {
                if (!row.read(record))
                    leaveOut("IDS_ISSUE_FILE_RECORDS_DAMAGED");
            } catch (const Error &error) {
                leaveOut("IDS_ISSUE_CATALOGUE_ROWS_DAMAGED", error.sentence());
                return;
            }
            if (row.isPlaced(record))
                insert(record);
            else
                leaveOut("IDS_ISSUE_CATALOGUE_ROWS_DAMAGED",
                         QStringLiteral("A domain or a path is missing."));
        };
    };
    Report ofTable;
    const RowsRead read =
        readRows(db, {.table = filesTable, .columns = {domainColumn, pathColumn}, .optional = {recordColumn}},
                 ofTable, prepare);
    if (!read.isWhole)
        tellLost(read.lost, ofTable.issues().first().reason);
    else
        compareWithIndex(db, read.rows);
}

void CatalogueLoader::compareWithIndex(const Sqlite3DB &db, qint64 rows)
{
    qint64 lost = 0;
    QString reason = QStringLiteral("Its rows and their index do not match.");
    try {
        const qint64 entries = countFiles(db);
        if (entries == rows)
            return;
        lost = std::max<qint64>(entries - rows, 0);
    } catch (const Error &error) {
        if (error.kind() != ErrorKind::Damaged)
            throw;
        reason = db.lastMessage();
    }
    tellLost(lost, reason);
}

/// `count` is 0 where nobody can tell how many.
void CatalogueLoader::tellLost(qint64 count, const QString &reason)
{
    if (count == 0 || m_catalogue.size() == 0)
        endEarly(unreadable(QStringLiteral("can not read %1. %2").arg(m_name, reason)));
    else
        m_report.add(
            {.what = "IDS_ISSUE_CATALOGUE_ROWS_DAMAGED", .where = m_name, .count = count, .reason = reason});
}

Report CatalogueLoader::loadMbdb(const QString &path)
{
    m_name = QStringLiteral("Manifest.mbdb");
    if (!QFileInfo(path).isFile())
        throw Error(QStringLiteral("can not open %1. It is no file.").arg(path));
    try {
        MBDBParser::read(path, [this](FileRecord &&record) {
            countRow();
            insert(record);
        });
    } catch (const Error &error) {
        endEarly(error);
    }
    return m_report;
}

void CatalogueLoader::insert(const FileRecord &record)
{
    if (record.domain.isEmpty()) {
        if (!record.relativePath.isEmpty())
            m_report.add(
                {.kind = IssueKind::LeftOut, .what = "IDS_ISSUE_ENTRIES_WITHOUT_DOMAIN", .where = m_name});
        return;
    }
    // What lies behind the end of a file that was cut off within a page is read as zeros.
    const bool isCut = m_report.count("IDS_ISSUE_CATALOGUE_DAMAGED") > 0 &&
                       (record.domain.contains('\0') || record.relativePath.contains('\0'));
    if (isCut)
        leaveOut("IDS_ISSUE_CATALOGUE_ROWS_DAMAGED");
    else if (record.domain.size() + record.relativePath.size() > longestPath ||
             record.relativePath.count('/') > deepestPath)
        leaveOut("IDS_ISSUE_PATHS_TOO_LONG");
    else
        m_catalogue.insert(record);
}

void CatalogueLoader::leaveOut(const char *what, const QString &reason)
{
    m_report.add({.what = what, .where = m_name, .reason = reason});
}

/// Told once: what is broken when the file is opened breaks again when it is read.
void CatalogueLoader::tellDamage(const QString &reason)
{
    qWarning("The catalogue of the backup is damaged: %s", qUtf8Printable(reason));
    if (m_report.count("IDS_ISSUE_CATALOGUE_DAMAGED") == 0)
        leaveOut("IDS_ISSUE_CATALOGUE_DAMAGED", reason);
}

void CatalogueLoader::countRow()
{
    if (m_rows++ % rowsBetweenReports != 0)
        return;
    m_progress.check();
    m_progress.report(textFor("IDS_LOADING_BACKUP"), -1, {});
}

void CatalogueLoader::endEarly(const Error &error)
{
    if (m_catalogue.size() == 0)
        throw error;
    tellDamage(error.sentence());
}
