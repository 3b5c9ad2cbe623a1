#include "backup/catalogue_loader.h"

#include "backup/archived_record.h"
#include "backup/mbdb_parser.h"
#include "base/error.h"
#include "base/secret.h"
#include "base/texts.h"
#include "sqlite/sqlite3_db.h"

#include <QCryptographicHash>
#include <QFileInfo>

namespace {
constexpr qint64 rowsBetweenReports = 4096;
constexpr qsizetype descriptorKeySize = 16;

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

/// One pass over the table "Files".
class FileRows
{
public:
    FileRows(const Sqlite3DB &db, const QByteArray &descriptorKey)
        : m_cursor(db.queryThrow(QStringLiteral("select * from Files"))),
          m_domain(m_cursor.columnIndex(QStringLiteral("domain"))),
          m_path(m_cursor.columnIndex(QStringLiteral("relativePath"))),
          m_file(m_cursor.columnIndex(QStringLiteral("file"))),
          m_descriptorKey(descriptorKey)
    {
        if (m_domain < 0 || m_path < 0)
            throw unreadable(QStringLiteral("can not read %1. Its table Files has no column %2.")
                                 .arg(db.name(), QLatin1String(m_domain < 0 ? "domain" : "relativePath")));
    }

    bool next() { return m_cursor.moveNext(); }
    /// False when the current row tells less of its file's place than a device writes: it lost its domain, or what
    /// is no folder its path. A row with neither stands for no file.
    bool isPlaced(const FileRecord &record) const
    {
        const bool hasPath = !m_cursor.isNull(m_path);
        if (m_cursor.isNull(m_domain))
            return !hasPath;
        const int type = record.mode & modeTypeMask;
        return hasPath || (type != modeRegular && type != modeLink);
    }

    /// The record of the current row; valid until the next. False when its file record cannot be read: what
    /// the columns say stands all the same. Throws Error when it cannot be decrypted.
    bool read(FileRecord &record)
    {
        record = FileRecord();
        record.domain = borrowed(m_cursor.viewText(m_domain));
        record.relativePath = borrowed(m_cursor.viewText(m_path));
        if (record.domain.isEmpty() || m_file < 0 || m_cursor.isNull(m_file))
            return true;
        const QByteArrayView blob = m_cursor.viewBlob(m_file);
        if (m_descriptorKey.isEmpty() || isPlist(blob))
            return m_reader.read(blob, record);
        return m_reader.read(MBDBParser::decryptFileDesc(blob, m_descriptorKey), record);
    }

private:
    Sqlite3Cursor m_cursor;
    int m_domain;
    int m_path;
    int m_file;
    QByteArray m_descriptorKey;
    ArchivedRecordReader m_reader;
};
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
    if (!db.hasTable(QStringLiteral("Files")))
        throw unreadable(QStringLiteral("can not read %1. It has no table Files.").arg(m_name));
    QByteArray key = descriptorKey(db, password);
    const WipedAtEnd wiped(key);
    readRows(db, key);
    return m_report;
}

void CatalogueLoader::readRows(const Sqlite3DB &db, const QByteArray &descriptorKey)
{
    FileRows rows(db, descriptorKey);
    FileRecord record;
    const auto next = [&] {
        try {
            return rows.next();
        } catch (const Error &error) {
            endEarly(error);
            return false;
        }
    };
    while (next()) {
        countRow();
        try {
            if (!rows.read(record))
                leaveOut("IDS_ISSUE_FILE_RECORDS_DAMAGED");
            if (!rows.isPlaced(record)) {
                leaveOut("IDS_ISSUE_CATALOGUE_ROWS_DAMAGED", QStringLiteral("A domain or a path is missing."));
                continue;
            }
        } catch (const Error &error) {
            leaveOut("IDS_ISSUE_CATALOGUE_ROWS_DAMAGED", error.sentence());
            continue;
        }
        insert(record);
    }
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
            m_report.add({.kind = IssueKind::LeftOut, .what = "IDS_ISSUE_ENTRIES_WITHOUT_DOMAIN", .where = m_name});
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
