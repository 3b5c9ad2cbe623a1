#include "backup/mbdb_parser.h"

#include "base/byte_reader.h"
#include "base/error.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <nettle/aes.h>
#include <nettle/cbc.h>

#include <array>

namespace {
constexpr QByteArrayView header("mbdb\x05\x00", 6);
constexpr quint16 absent = 0xFFFF;
// 1,500,000 files, more than any device was seen to have, take 300 MB; all of it is read into memory.
constexpr qint64 largestCatalogue = 512 << 20;

QByteArray readString(ByteReader &reader)
{
    const quint16 length = reader.u16be();
    return length == absent ? QByteArray() : reader.slice(length).toByteArray();
}

FileRecord readRecord(ByteReader &reader)
{
    FileRecord record;
    record.domain = readString(reader);
    record.relativePath = readString(reader);
    record.target = readString(reader);
    record.digest = readString(reader);
    record.encryptionKey = readString(reader);
    record.mode = reader.u16be();
    record.inode = reader.u64be();
    record.userId = reader.u32be();
    record.groupId = reader.u32be();
    record.lastModified = reader.u32be();
    record.lastStatusChange = reader.u32be();
    record.birth = reader.u32be();
    record.sizeBytes = reader.u64be();
    record.protectionClass = reader.u8();
    const int propertyCount = reader.u8();
    record.properties.reserve(propertyCount);
    for (int i = 0; i < propertyCount; ++i) {
        QByteArray name = readString(reader);
        QByteArray value = readString(reader);
        record.properties.emplaceBack(std::move(name), std::move(value));
    }
    return record;
}

template <typename Integer>
void writeInteger(QByteArray &out, Integer value)
{
    char bytes[sizeof(Integer)];
    qToBigEndian(value, bytes);
    out.append(bytes, sizeof(Integer));
}

void writeText(QByteArray &out, const QByteArray &text)
{
    if (text.size() >= absent)
        throw Error(QStringLiteral("A text of %1 bytes is too long for Manifest.mbdb.").arg(text.size()));
    writeInteger(out, static_cast<quint16>(text.size()));
    out.append(text);
}

void writeOptional(QByteArray &out, const QByteArray &text)
{
    if (text.isEmpty())
        writeInteger(out, absent);
    else
        writeText(out, text);
}

void writeRecord(QByteArray &out, const FileRecord &record)
{
    if (record.properties.size() > 255)
        throw Error(QStringLiteral("%1 properties of one file are too many for Manifest.mbdb.")
                        .arg(record.properties.size()));
    writeText(out, record.domain);
    writeText(out, record.relativePath);
    writeOptional(out, record.target);
    writeOptional(out, record.digest);
    writeOptional(out, record.encryptionKey);
    writeInteger<quint16>(out, record.mode);
    writeInteger<quint64>(out, record.inode);
    for (const quint32 value :
         {record.userId, record.groupId, record.lastModified, record.lastStatusChange, record.birth})
        writeInteger(out, value);
    writeInteger<quint64>(out, record.sizeBytes);
    writeInteger<quint8>(out, record.protectionClass);
    writeInteger(out, static_cast<quint8>(record.properties.size()));
    for (const auto &[name, value] : record.properties) {
        writeText(out, name);
        writeOptional(out, value);
    }
}
} // namespace

void MBDBParser::readBytes(QByteArrayView bytes, const std::function<void(FileRecord &&)> &sink)
{
    ByteReader reader(bytes);
    reader.skip(header.size());
    while (!reader.atEnd())
        sink(readRecord(reader));
}

void MBDBParser::read(const QString &path, const std::function<void(FileRecord &&)> &sink)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(path, file.errorString()));
    if (file.size() > largestCatalogue)
        throw Error(QStringLiteral("can not read %1. It is larger than any catalogue.").arg(path),
                    ErrorKind::Damaged, FileAccess::Reading);
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw Error(QStringLiteral("can not read %1. %2").arg(path, file.errorString()));
    try {
        readBytes(bytes, sink);
    } catch (const Error &error) {
        throw error.withContext(QFileInfo(path).fileName());
    }
}

QByteArray MBDBParser::serialise(const QList<FileRecord> &records)
{
    QByteArray out = header.toByteArray();
    for (const FileRecord &record : records)
        writeRecord(out, record);
    return out;
}

namespace {
enum class Direction { Encrypt, Decrypt };

/// The key schedule of any of the three AES key sizes behind nettle's general cipher signature.
class AnyAes
{
public:
    /// False when no AES key has this length.
    bool setKey(const QByteArray &key, Direction direction)
    {
        const auto *bytes = reinterpret_cast<const std::uint8_t *>(key.constData());
        const bool encrypt = direction == Direction::Encrypt;
        switch (key.size()) {
        case AES128_KEY_SIZE:
            (encrypt ? aes128_set_encrypt_key : aes128_set_decrypt_key)(&m_context.aes128, bytes);
            m_cipher = reinterpret_cast<nettle_cipher_func *>(encrypt ? aes128_encrypt : aes128_decrypt);
            return true;
        case AES192_KEY_SIZE:
            (encrypt ? aes192_set_encrypt_key : aes192_set_decrypt_key)(&m_context.aes192, bytes);
            m_cipher = reinterpret_cast<nettle_cipher_func *>(encrypt ? aes192_encrypt : aes192_decrypt);
            return true;
        case AES256_KEY_SIZE:
            (encrypt ? aes256_set_encrypt_key : aes256_set_decrypt_key)(&m_context.aes256, bytes);
            m_cipher = reinterpret_cast<nettle_cipher_func *>(encrypt ? aes256_encrypt : aes256_decrypt);
            return true;
        default:
            return false;
        }
    }
    const void *context() const { return &m_context; }
    nettle_cipher_func *cipher() const { return m_cipher; }

private:
    union {
        aes128_ctx aes128;
        aes192_ctx aes192;
        aes256_ctx aes256;
    } m_context;
    nettle_cipher_func *m_cipher = nullptr;
};

std::array<std::uint8_t, AES_BLOCK_SIZE> descriptorVector()
{
    std::array<std::uint8_t, AES_BLOCK_SIZE> vector;
    for (std::size_t i = 0; i < vector.size(); ++i)
        vector[i] = static_cast<std::uint8_t>(i);
    return vector;
}
} // namespace

QByteArray MBDBParser::decryptFileDesc(QByteArrayView cipher, const QByteArray &key)
{
    if (cipher.size() % AES_BLOCK_SIZE != 0)
        throw Error(QStringLiteral("MBDBParser::decryptFileDesc, size % 16 != 0."));
    AnyAes aes;
    if (!aes.setKey(key, Direction::Decrypt))
        throw Error(QStringLiteral("MBDBParser::decryptFileDesc, aes_crypt_cbc failed."));
    if (cipher.isEmpty())
        return {};
    auto vector = descriptorVector();
    QByteArray plain(cipher.size(), Qt::Uninitialized);
    cbc_decrypt(aes.context(), aes.cipher(), AES_BLOCK_SIZE, vector.data(),
                static_cast<std::size_t>(cipher.size()), reinterpret_cast<std::uint8_t *>(plain.data()),
                reinterpret_cast<const std::uint8_t *>(cipher.data()));
    plain.chop(static_cast<std::uint8_t>(plain.back()));
    return plain;
}

QByteArray MBDBParser::encryptFileDesc(QByteArrayView plain, const QByteArray &key)
{
    AnyAes aes;
    if (!aes.setKey(key, Direction::Encrypt))
        throw Error(QStringLiteral("MBDBParser::encryptFileDesc, aes_crypt_cbc failed."));
    const qsizetype padding = AES_BLOCK_SIZE - plain.size() % AES_BLOCK_SIZE;
    QByteArray bytes = plain.toByteArray();
    bytes.append(padding, static_cast<char>(padding));
    auto vector = descriptorVector();
    auto *data = reinterpret_cast<std::uint8_t *>(bytes.data());
    cbc_encrypt(aes.context(), aes.cipher(), AES_BLOCK_SIZE, vector.data(),
                static_cast<std::size_t>(bytes.size()), data, data);
    return bytes;
}
