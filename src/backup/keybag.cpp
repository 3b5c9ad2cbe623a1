#include "backup/keybag.h"

#include "base/byte_reader.h"
#include "base/error.h"

#include <QtEndian>

#include <nettle/aes.h>
#include <nettle/pbkdf2.h>

#include <cstring>
#include <optional>
#include <vector>

namespace {
constexpr qsizetype wrappedKeySize = 40;
constexpr qsizetype keySize = AES256_KEY_SIZE;
// Ten times what devices ask for; more is a damaged count that would keep the user waiting for hours.
constexpr std::uint32_t maximumRounds = 100'000'000;
constexpr std::uint32_t protectedByPassword = 0x2;

Error damaged(const QString &what)
{
    return Error(QStringLiteral("The keybag of this backup is damaged: %1.").arg(what));
}

std::uint32_t number(const Keybag::Attributes &attributes, const char *tag)
{
    const QByteArray value = attributes.value(tag);
    if (value.size() != 4)
        throw damaged(
            QStringLiteral("%1 has %2 bytes instead of 4").arg(QLatin1String(tag)).arg(value.size()));
    return qFromBigEndian<std::uint32_t>(value.constData());
}

std::uint32_t rounds(const Keybag::Attributes &attributes, const char *tag)
{
    const std::uint32_t count = number(attributes, tag);
    if (count == 0 || count > maximumRounds)
        throw damaged(QStringLiteral("%1 asks for %2 rounds").arg(QLatin1String(tag)).arg(count));
    return count;
}

bool belongsToClass(QByteArrayView tag)
{
    return tag == "CLAS" || tag == "WRAP" || tag == "WPKY" || tag == "KTYP" || tag == "PBKY";
}

bool isPasswordProtected(const Keybag::Attributes &entry)
{
    return entry.contains("WPKY") && entry.contains("WRAP") && (number(entry, "WRAP") & protectedByPassword);
}

const std::uint8_t *octets(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

using Pbkdf2 = decltype(pbkdf2_hmac_sha256);

QByteArray derive(Pbkdf2 function, const QByteArray &secret, std::uint32_t count, const QByteArray &salt)
{
    QByteArray key(keySize, Qt::Uninitialized);
    function(static_cast<std::size_t>(secret.size()), octets(secret), count,
             static_cast<std::size_t>(salt.size()), octets(salt), static_cast<std::size_t>(key.size()),
             reinterpret_cast<std::uint8_t *>(key.data()));
    return key;
}
} // namespace

Keybag Keybag::parse(QByteArrayView bytes)
{
    Keybag keybag;
    std::optional<Attributes> entry;
    const auto store = [&] {
        if (entry && entry->contains("CLAS"))
            keybag.m_classes.insert(number(*entry, "CLAS"), *entry);
    };
    ByteReader reader(bytes);
    while (!reader.atEnd()) {
        QByteArrayView tag;
        QByteArrayView value;
        try {
            tag = reader.slice(4);
            value = reader.slice(reader.u32be());
        } catch (const Error &error) {
            throw damaged(error.sentence());
        }
        if (tag == "UUID" && keybag.m_attributes.contains("UUID")) {
            store();
            entry = Attributes{{"UUID", value.toByteArray()}};
        } else if (entry && belongsToClass(tag)) {
            entry->insert(tag.toByteArray(), value.toByteArray());
        } else {
            keybag.m_attributes.insert(tag.toByteArray(), value.toByteArray());
        }
    }
    store();
    if (keybag.m_classes.isEmpty())
        throw damaged(QStringLiteral("it holds no class keys"));
    return keybag;
}

bool Keybag::hasDoubleProtection() const
{
    return m_attributes.contains("DPIC") && m_attributes.contains("DPSL");
}

bool Keybag::unlock(const QByteArray &password)
{
    for (auto entry = m_classes.cbegin(); entry != m_classes.cend(); ++entry) {
        const qsizetype size = entry->value("WPKY").size();
        if (isPasswordProtected(*entry) && size != wrappedKeySize)
            throw damaged(QStringLiteral("the key of class %1 has %2 bytes").arg(entry.key()).arg(size));
    }
    if (!m_attributes.contains("SALT") || !m_attributes.contains("ITER"))
        throw damaged(QStringLiteral("SALT or ITER is missing"));
    const std::uint32_t count = rounds(m_attributes, "ITER");

    QByteArray secret = password;
    if (hasDoubleProtection())
        secret = derive(pbkdf2_hmac_sha256, secret, rounds(m_attributes, "DPIC"), m_attributes.value("DPSL"));
    const QByteArray passwordKey = derive(pbkdf2_hmac_sha1, secret, count, m_attributes.value("SALT"));

    QMap<std::uint32_t, Attributes> classes = m_classes;
    for (Attributes &entry : classes) {
        if (!isPasswordProtected(entry))
            continue;
        const QByteArray key = aesKeyUnwrap(passwordKey, entry.value("WPKY"));
        if (key.isEmpty())
            return false;
        entry.insert("KEY", key);
    }
    m_classes = std::move(classes);
    m_unlocked = true;
    return true;
}

QByteArray Keybag::unwrapFileKey(std::uint32_t protectionClass, QByteArrayView wrapped) const
{
    const auto entry = m_classes.constFind(protectionClass);
    if (entry == m_classes.cend() || wrapped.size() != wrappedKeySize)
        return {};
    return aesKeyUnwrap(entry->value("KEY"), wrapped);
}

QByteArray Keybag::unwrapWithAnyClass(QByteArrayView wrapped) const
{
    for (auto entry = m_classes.cbegin(); entry != m_classes.cend(); ++entry) {
        if (const QByteArray key = unwrapFileKey(entry.key(), wrapped); !key.isEmpty())
            return key;
    }
    return {};
}

QByteArray aesKeyUnwrap(const QByteArray &key, QByteArrayView wrapped)
{
    constexpr qsizetype half = AES_BLOCK_SIZE / 2;
    constexpr quint64 integrity = 0xA6A6A6A6A6A6A6A6;
    const qsizetype blocks = wrapped.size() / half - 1;
    if (key.size() != keySize || wrapped.size() % half != 0 || blocks < 2)
        return {};
    aes256_ctx context;
    aes256_set_decrypt_key(&context, octets(key));

    QByteArray plain = wrapped.sliced(half).toByteArray();
    auto *registers = reinterpret_cast<std::uint8_t *>(plain.data());
    quint64 a = qFromBigEndian<quint64>(wrapped.data());
    std::uint8_t block[AES_BLOCK_SIZE];
    for (quint64 step = 6 * static_cast<quint64>(blocks); step > 0; --step) {
        std::uint8_t *r = registers + (step - 1) % static_cast<quint64>(blocks) * half;
        qToBigEndian(a ^ step, block);
        std::memcpy(block + half, r, half);
        aes256_decrypt(&context, sizeof block, block, block);
        a = qFromBigEndian<quint64>(block);
        std::memcpy(r, block + half, half);
    }
    return a == integrity ? plain : QByteArray();
}
