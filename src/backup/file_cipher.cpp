#include "backup/file_cipher.h"

#include "backup/background_writer.h"
#include "backup/target_file.h"
#include "base/error.h"
#include "base/own_file.h"
#include "base/secret.h"

#include <QFile>

#include <nettle/aes.h>
#include <nettle/cbc.h>

#include <algorithm>
#include <vector>

namespace {
// What callers are told about; reading and writing go in larger pieces.
constexpr std::uint64_t chunkSize = 8192;
// Stays in the processor's cache between reading and deciphering.
constexpr std::uint64_t pieceSize = 8 * chunkSize;
// Written at once: file systems take large blocks at less cost.
constexpr std::uint64_t blockSize = 16 * pieceSize;
constexpr std::uint64_t cipherBlock = AES_BLOCK_SIZE;

Error damaged(const QString &sentence)
{
    return Error(sentence, ErrorKind::Damaged, FileAccess::Reading);
}

/// A source that is read up to the size it had when it was opened, so that a file that grows meanwhile gives
/// what was there.
class SourceReader
{
public:
    explicit SourceReader(const CopySource &source) : m_file(source.path)
    {
        if (!source.folder.isEmpty())
            openOwnFile(m_file, source.folder, source.name);
        else if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            throw Error::ofFile(QStringLiteral("can not open %1. %2"), m_file, FileAccess::Reading);
        m_size = static_cast<std::uint64_t>(m_file.size());
    }

    std::uint64_t size() const { return m_size; }
    std::uint64_t remaining() const { return m_size - m_done; }

    std::uint64_t done() const { return m_done; }
    void leaveOutLast(std::uint64_t bytes) { m_size -= bytes; }

    /// Reads the next bytes, as many as `room` or as remain. Throws Error(`shortRead`) when the file has
    /// become shorter.
    std::uint64_t read(std::uint8_t *buffer, std::uint64_t room, const QString &shortRead)
    {
        const std::uint64_t wanted = std::min(room, remaining());
        std::uint64_t filled = 0;
        while (filled < wanted) {
            const qint64 got =
                m_file.read(reinterpret_cast<char *>(buffer + filled), static_cast<qint64>(wanted - filled));
            if (got < 0)
                throw Error::ofFile(QStringLiteral("can not read %1. %2"), m_file, FileAccess::Reading);
            if (got == 0)
                throw damaged(shortRead);
            filled += static_cast<std::uint64_t>(got);
        }
        m_done += filled;
        return filled;
    }

private:
    QFile m_file;
    std::uint64_t m_size = 0;
    std::uint64_t m_done = 0;
};

void write(TargetFile &target, const std::vector<std::uint8_t> &buffer, std::uint64_t size)
{
    target.write(reinterpret_cast<const char *>(buffer.data()), static_cast<qint64>(size));
}

void reportChunks(const CopyProgress &progress, std::uint64_t total, std::uint64_t from, std::uint64_t to)
{
    if (!progress)
        return;
    while (from < to) {
        from = std::min(from + chunkSize, to);
        progress(total, from);
    }
}

void requireKey(const QByteArray &key, const QString &path)
{
    if (key.size() != AES256_KEY_SIZE)
        throw damaged(QStringLiteral("%1, the key has %2 bytes instead of 32.").arg(path).arg(key.size()));
}

const std::uint8_t *octets(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}
/// Deciphers a source piece by piece, chained across the whole of it.
class Decryption
{
public:
    Decryption(const QByteArray &key, SourceReader &source)
        : m_source(source), m_cipher(std::min(pieceSize, source.size()))
    {
        aes256_set_decrypt_key(&m_context, octets(key));
    }
    ~Decryption() { wipe(&m_context, sizeof m_context); }
    Decryption(const Decryption &) = delete;
    Decryption &operator=(const Decryption &) = delete;

    /// Fills `block` as far as the source goes; gives the number of bytes.
    std::uint64_t fill(std::vector<std::uint8_t> &block)
    {
        std::uint64_t filled = 0;
        while (filled < block.size() && m_source.remaining() > 0) {
            const std::uint64_t count = m_source.read(
                m_cipher.data(), std::min<std::uint64_t>(m_cipher.size(), block.size() - filled),
                QStringLiteral("BackupManifest::decryptFile, imcomplete IO read (rd=0)."));
            cbc_decrypt(&m_context, reinterpret_cast<nettle_cipher_func *>(aes256_decrypt), AES_BLOCK_SIZE,
                        m_vector, count, block.data() + filled, m_cipher.data());
            filled += count;
        }
        return filled;
    }

private:
    SourceReader &m_source;
    aes256_ctx m_context;
    std::uint8_t m_vector[AES_BLOCK_SIZE] = {};
    std::vector<std::uint8_t> m_cipher;
};

/// How many bytes of padding end the content.
std::uint64_t paddingOf(const std::vector<std::uint8_t> &plain, std::uint64_t size, Padding padding)
{
    const std::uint8_t last = plain[size - 1];
    if (last > 0 && last <= cipherBlock)
        return last;
    if (padding == Padding::Required)
        throw damaged(QStringLiteral("BackupManifest::decryptFile, last byte must GT 0 and LET 16"));
    return 0;
}
} // namespace

void copyFile(const CopySource &source, const Destination &destination, const CopyProgress &progress)
{
    SourceReader reader(source);
    TargetFile target(destination.path);
    std::vector<std::uint8_t> buffer(std::min(blockSize, reader.size()));
    const QString shortRead =
        QStringLiteral("can not read %1. The file became shorter while it was copied.").arg(source.path);
    std::uint64_t done = 0;
    while (reader.remaining() > 0) {
        const std::uint64_t count = reader.read(buffer.data(), buffer.size(), shortRead);
        write(target, buffer, count);
        reportChunks(progress, reader.size(), done, done + count);
        done += count;
    }
    target.commit(destination.unixSeconds);
}

void decryptFile(const QByteArray &key, const CopySource &source, const Destination &destination,
                 const CopyProgress &progress, Padding padding)
{
    requireKey(key, source.path);
    SourceReader reader(source);
    TargetFile target(destination.path, destination.placing);
    if (padding == Padding::KeepIfBroken)
        reader.leaveOutLast(reader.size() % cipherBlock);
    if (reader.size() % cipherBlock != 0)
        throw damaged(QStringLiteral("%1, POLARSSL_ERR_AES_INVALID_INPUT_LENGTH (rd%16 != 0).").arg(source.path));

    const auto threads =
        reader.size() > 2 * blockSize ? BackgroundWriter::Threads::Two : BackgroundWriter::Threads::One;
    BackgroundWriter writer(
        [&target](const std::uint8_t *bytes, std::uint64_t size) {
            target.write(reinterpret_cast<const char *>(bytes), static_cast<qint64>(size));
        },
        std::min(blockSize, reader.size()), threads);
    Decryption decryption(key, reader);
    while (reader.remaining() > 0) {
        const std::uint64_t done = reader.done();
        BackgroundWriter::Block &block = writer.nextBlock();
        std::uint64_t kept = decryption.fill(block);
        if (reader.remaining() == 0)
            kept -= paddingOf(block, kept, padding);
        writer.submit(kept);
        reportChunks(progress, reader.size(), done, reader.done());
    }
    writer.finish();
    target.commit(destination.unixSeconds);
}

void encryptFile(const QByteArray &key, const QString &source, const QString &destination)
{
    requireKey(key, source);
    SourceReader reader(source);
    TargetFile target(destination);
    aes256_ctx context;
    aes256_set_encrypt_key(&context, octets(key));
    std::uint8_t vector[AES_BLOCK_SIZE] = {};
    std::vector<std::uint8_t> buffer(std::min(blockSize, reader.size()));
    const QString shortRead = QStringLiteral("BackupManifest::encryptFileThrow, imcomplete IO read.");
    bool padded = false;
    while (!padded) {
        std::uint64_t count = reader.read(buffer.data(), buffer.size(), shortRead);
        if (reader.remaining() == 0) {
            const std::uint64_t missing = cipherBlock - count % cipherBlock;
            buffer.resize(count);
            buffer.resize(count + missing, static_cast<std::uint8_t>(missing));
            count += missing;
            padded = true;
        }
        cbc_encrypt(&context, reinterpret_cast<nettle_cipher_func *>(aes256_encrypt), AES_BLOCK_SIZE, vector,
                    count, buffer.data(), buffer.data());
        write(target, buffer, count);
    }
    target.commit();
}
