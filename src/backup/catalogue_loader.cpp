#include "backup/catalogue_loader.h"

#include "backup/archived_record.h"
#include "backup/mbdb_parser.h"
#include "base/error.h"
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
            throw Error(QStringLiteral("can not read %1. Its table Files has no column %2.")
                            .arg(db.path(), QLatin1String(m_domain < 0 ? "domain" : "relativePath")));
    }

    bool next() { return m_cursor.moveNext(); }

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

CatalogueLoss CatalogueLoader::loadDatabase(const QString &path, const QByteArray &password)
{
    if (QFileInfo(path).size() == 0)
        throw Error(QStringLiteral("can not read %1. The file is empty.").arg(path));
    Sqlite3DB db;
    open(db, path);
    if (!db.hasTable(QStringLiteral("Files")))
        throw Error(QStringLiteral("can not read %1. It has no table Files.").arg(path));
    readRows(db, descriptorKey(db, password));
    return m_loss;
}

/// A file that was cut off is opened for what is left of it.
void CatalogueLoader::open(Sqlite3DB &db, const QString &path)
{
    try {
        db.openThrow(path, SqliteOpen::Immutable);
    } catch (const Error &error) {
        if (!db.open(path, SqliteOpen::Salvage))
            throw;
        m_loss.skip(error.sentence());
    }
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
                m_loss.skip(
                    QStringLiteral("the record of %1, %2 cannot be read")
                        .arg(QString::fromUtf8(record.domain), QString::fromUtf8(record.relativePath)));
        } catch (const Error &error) {
            m_loss.skip(error.sentence());
            continue;
        }
        insert(record);
    }
}

CatalogueLoss CatalogueLoader::loadMbdb(const QString &path)
{
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
    return m_loss;
}

void CatalogueLoader::insert(const FileRecord &record)
{
    if (record.domain.isEmpty())
        return;
    if (record.domain.size() + record.relativePath.size() > longestPath)
        m_loss.skip(QStringLiteral("a path of %1 bytes is longer than any device allows")
                        .arg(record.relativePath.size()));
    else
        m_catalogue.insert(record);
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
    m_loss.skip(error.sentence());
    qWarning("The catalogue of the backup is damaged: %s", error.what());
}
