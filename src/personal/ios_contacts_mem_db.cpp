#include "personal/ios_contacts_mem_db.h"

#include "backup/device_database.h"
#include "base/error.h"

namespace {
const SourceFile imagesFile{QStringLiteral("HomeDomain"),
                            QStringLiteral("Library/AddressBook/AddressBookImages.sqlitedb")};
} // namespace

IOSContactsMemDb::IOSContactsMemDb(FileSource &source, const NumberNormaliser &normalise, Report &report)
    : m_report(report), m_names(source, normalise, report)
{
    try {
        findPhotos(source);
    } catch (const Error &error) {
        report.add("IDS_ISSUE_PICTURES_OF_NUMBERS", error);
    }
}

// A device keeps several sizes of a picture; the last one is shown.
void IOSContactsMemDb::findPhotos(FileSource &source)
{
    if (!openDeviceDatabase(m_images, source, imagesFile))
        return;
    m_images.checkPages();
    if (!m_images.damage().isEmpty())
        m_report.add("IDS_ISSUE_PICTURES_OF_NUMBERS",
                     Error(m_images.damage(), ErrorKind::Damaged, FileAccess::Reading).at(m_images.name()));
    Sqlite3Cursor row =
        m_images.queryThrow(QStringLiteral("select rowid, record_id from ABThumbnailImage order by rowid"));
    while (row.moveNext())
        m_imageOf.insert(row.getInt64(1), row.getInt64(0));
}

QByteArray IOSContactsMemDb::photoOf(qint64 person) const
{
    const auto image = m_imageOf.constFind(person);
    if (image == m_imageOf.constEnd())
        return {};
    try {
        Sqlite3Cursor row =
            m_images.queryThrow(Sqlite3Sql(QStringLiteral("select data from ABThumbnailImage where rowid=?"))
                                    .addInt64Param(*image));
        return row.moveNext() ? row.getBlob(0) : QByteArray();
    } catch (const Error &error) {
        m_report.add("IDS_ISSUE_PICTURES_OF_NUMBERS", error);
        return {};
    }
}

std::optional<ContactName> IOSContactsMemDb::find(const QString &number) const
{
    const auto owner = m_names.ownerOfNumber(number);
    return owner ? std::optional(ContactName{owner->name, photoOf(owner->rowid)}) : std::nullopt;
}
