#include "sample/mbdb_writer.h"

#include "base/error.h"

namespace sample {

namespace {

// domain, path, link target, digest, key: each a length (u16, FFFF = absent) and its bytes | mode u16 | inode
// u64 | user, group u32 | modified, accessed, created u32 | size u64 | protection class u8 | property count
// u8 | properties: name, value.
class RecordBytes
{
public:
    QByteArray m_bytes;

    void integer(qint64 value, int width)
    {
        for (int shift = (width - 1) * 8; shift >= 0; shift -= 8)
            m_bytes += static_cast<char>(value >> shift);
    }
    void string(const QByteArray &value)
    {
        integer(value.size(), 2);
        m_bytes += value;
    }
    void optionalString(const QByteArray &value)
    {
        if (value.isEmpty())
            integer(0xFFFF, 2);
        else
            string(value);
    }
};

} // namespace

MbdbWriter::MbdbWriter(const QString &path) : m_file(path)
{
    if (!m_file.open(QIODevice::WriteOnly))
        throw Error(QStringLiteral("can not create %1. %2").arg(path, m_file.errorString()));
    write(QByteArray("mbdb\x05\x00", 6));
}

void MbdbWriter::write(const QByteArray &bytes)
{
    if (m_file.write(bytes) != bytes.size())
        throw Error(QStringLiteral("can not write %1. %2").arg(m_file.fileName(), m_file.errorString()));
}

void MbdbWriter::add(const CatalogueRecord &record)
{
    RecordBytes bytes;
    bytes.string(record.domain.toUtf8());
    bytes.string(record.relativePath.toUtf8()); // of a domain's root empty, not absent
    bytes.optionalString(record.target.toUtf8());
    bytes.optionalString(record.digest);
    bytes.optionalString(record.encryptionKey);
    bytes.integer(record.mode, 2);
    bytes.integer(record.inode, 8);
    bytes.integer(record.userId, 4);
    bytes.integer(record.groupId, 4);
    bytes.integer(record.modified, 4);
    bytes.integer(record.statusChanged, 4);
    bytes.integer(record.born, 4);
    bytes.integer(record.size, 8);
    bytes.integer(record.protectionClass, 1);
    bytes.integer(static_cast<qint64>(record.properties.size()), 1);
    for (const auto &[name, value] : record.properties) {
        bytes.string(name);
        bytes.string(value);
    }
    write(bytes.m_bytes);
}

void MbdbWriter::finish()
{
    if (!m_file.flush())
        throw Error(QStringLiteral("can not write %1. %2").arg(m_file.fileName(), m_file.errorString()));
    m_file.close();
}

} // namespace sample
