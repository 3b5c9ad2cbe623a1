#include "sample/cipher.h"

#include "base/error.h"

#include <QIODevice>

#include <nettle/aes.h>
#include <nettle/cbc.h>
#include <nettle/nist-keywrap.h>
#include <nettle/pbkdf2.h>

#include <array>
#include <numeric>

namespace sample {

namespace {

const uint8_t *in(const QByteArray &bytes)
{
    return reinterpret_cast<const uint8_t *>(bytes.constData());
}

uint8_t *out(QByteArray &bytes)
{
    return reinterpret_cast<uint8_t *>(bytes.data());
}

QByteArray padded(QByteArray plain)
{
    const auto missing = AES_BLOCK_SIZE - plain.size() % AES_BLOCK_SIZE;
    return plain.append(missing, static_cast<char>(missing));
}

struct ContentCipher
{
    explicit ContentCipher(const QByteArray &key) { aes256_set_encrypt_key(&m_context, in(key)); }

    void encrypt(QByteArray &blocks)
    {
        cbc_encrypt(&m_context, reinterpret_cast<nettle_cipher_func *>(aes256_encrypt), AES_BLOCK_SIZE,
                    m_iv.data(), static_cast<std::size_t>(blocks.size()), out(blocks), in(blocks));
    }

private:
    aes256_ctx m_context;
    std::array<uint8_t, AES_BLOCK_SIZE> m_iv = {};
};

} // namespace

QByteArray encryptContent(const QByteArray &key, const QByteArray &plain, bool withPadding)
{
    QByteArray blocks = withPadding ? padded(plain) : plain;
    blocks.detach();
    ContentCipher(key).encrypt(blocks);
    return blocks;
}

void encryptContent(const QByteArray &key, QIODevice &plain, QIODevice &encrypted)
{
    constexpr qint64 pieceSize = 1 << 20;
    ContentCipher cipher(key);
    bool last = false;
    while (!last) {
        QByteArray piece = plain.read(pieceSize);
        last = piece.size() < pieceSize;
        if (last)
            piece = padded(piece);
        cipher.encrypt(piece);
        if (encrypted.write(piece) != piece.size())
            throw Error(encrypted.errorString());
    }
    if (!plain.atEnd())
        throw Error(plain.errorString());
}

QByteArray encryptDescriptor(const QByteArray &key, const QByteArray &plain)
{
    aes128_ctx context;
    aes128_set_encrypt_key(&context, in(key));
    std::array<uint8_t, AES_BLOCK_SIZE> iv;
    std::iota(iv.begin(), iv.end(), uint8_t(0));
    QByteArray blocks = padded(plain);
    cbc_encrypt(&context, reinterpret_cast<nettle_cipher_func *>(aes128_encrypt), AES_BLOCK_SIZE, iv.data(),
                static_cast<std::size_t>(blocks.size()), out(blocks), in(blocks));
    return blocks;
}

QByteArray wrapKey(const QByteArray &kek, const QByteArray &key)
{
    static constexpr std::array<uint8_t, 8> iv = {0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6};
    aes256_ctx context;
    aes256_set_encrypt_key(&context, in(kek));
    QByteArray wrapped(key.size() + 8, Qt::Uninitialized);
    aes256_keywrap(&context, iv.data(), static_cast<std::size_t>(wrapped.size()), out(wrapped), in(key));
    return wrapped;
}

QByteArray passwordKey(const QByteArray &password, const QByteArray &outerSalt, int outerRounds,
                       const QByteArray &salt, int rounds)
{
    QByteArray secret = password;
    if (!outerSalt.isEmpty()) {
        secret = QByteArray(32, Qt::Uninitialized);
        pbkdf2_hmac_sha256(static_cast<std::size_t>(password.size()), in(password),
                           static_cast<unsigned>(outerRounds), static_cast<std::size_t>(outerSalt.size()),
                           in(outerSalt), 32, out(secret));
    }
    QByteArray key(32, Qt::Uninitialized);
    pbkdf2_hmac_sha1(static_cast<std::size_t>(secret.size()), in(secret), static_cast<unsigned>(rounds),
                     static_cast<std::size_t>(salt.size()), in(salt), 32, out(key));
    return key;
}

} // namespace sample
