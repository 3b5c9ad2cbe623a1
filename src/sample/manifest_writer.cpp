#include "sample/manifest_writer.h"

#include "sample/cipher.h"
#include "sample/keyed_archive.h"

namespace sample {

ManifestWriter::ManifestWriter(const QString &path, const QByteArray &descriptorKey, const QByteArray &salt)
    : m_file(path), m_descriptorKey(descriptorKey)
{
    m_file.execute(
        "create table Files (fileID TEXT PRIMARY KEY, domain TEXT, relativePath TEXT, flags INTEGER, "
        "file BLOB);"
        "create table Properties (key TEXT PRIMARY KEY, value BLOB)");
    if (!salt.isEmpty())
        Statement(m_file, "insert into Properties values('salt', ?)").run(salt);
    m_insert = std::make_unique<Statement>(
        m_file, "insert or replace into Files(fileID, domain, relativePath, flags, file) values(?,?,?,?,?)");
}

void ManifestWriter::add(const CatalogueRecord &record)
{
    const auto layout = ++m_rows % 7 == 0 ? RecordLayout::RootLast : RecordLayout::RootFirst;
    QByteArray blob = archivedFileRecord(record, layout);
    if (!m_descriptorKey.isEmpty())
        blob = encryptDescriptor(m_descriptorKey, blob);
    // A domain's own row has an empty path, not none.
    const QString path = record.relativePath.isNull() ? QStringLiteral("") : record.relativePath;
    m_insert->run(record.fileId(), record.domain, path, static_cast<int>(record.kind), blob);
}

void ManifestWriter::finish()
{
    m_insert.reset();
    m_file.execute("create index FilesDomainIdx on Files(domain);"
                   "create index FilesRelativePathIdx on Files(relativePath);"
                   "create index FilesFlagsIdx on Files(flags)");
    m_file.close(SqliteFile::Journal::Rollback);
}

} // namespace sample
