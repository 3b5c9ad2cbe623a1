#pragma once

#include "sample/catalogue_record.h"
#include "sample/sqlite_file.h"

namespace sample {

/// Manifest.db: one row a record, the rest of it archived in the column `file`.
class ManifestWriter : public CatalogueWriter
{
public:
    /// With a descriptor key (16 bytes) every `file` blob is encrypted and `salt` goes into the properties.
    explicit ManifestWriter(const QString &path, const QByteArray &descriptorKey = {},
                            const QByteArray &salt = {});

    void add(const CatalogueRecord &record) override;
    void finish() override;

private:
    SqliteFile m_file;
    std::unique_ptr<Statement> m_insert;
    QByteArray m_descriptorKey;
    qint64 m_rows = 0;
};

} // namespace sample
