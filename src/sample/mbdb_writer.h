#pragma once

#include "sample/catalogue_record.h"

#include <QFile>

namespace sample {

/// Manifest.mbdb: "mbdb" 05 00 and the records one after another, all numbers big-endian.
class MbdbWriter : public CatalogueWriter
{
public:
    explicit MbdbWriter(const QString &path);

    void add(const CatalogueRecord &record) override;
    void finish() override;

private:
    void write(const QByteArray &bytes);

    QFile m_file;
};

} // namespace sample
