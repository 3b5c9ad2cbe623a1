#include "backup/keybag.h"

#include "base/byte_reader.h"
#include "base/error.h"
#include "base/secret.h"

#include <QtEndian>

#include <nettle/aes.h>
#include <nettle/hmac.h>

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

struct Sha1
{
    using Context = hmac_sha1_ctx;
    static constexpr std::size_t size = SHA1_DIGEST_SIZE;
    static constexpr auto setKey = hmac_sha1_set_key;
    static constexpr auto update = hmac_sha1_update;
    static constexpr auto digest = hmac_sha1_digest;
};

struct Sha256
{
    using Context = hmac_sha256_ctx;
    static constexpr std::size_t size = SHA256_DIGEST_SIZE;
    static constexpr auto setKey = hmac_sha256_set_key;
    static constexpr auto update = hmac_sha256_update;
    static constexpr auto digest = hmac_sha256_digest;
};

template <typename Hash>
constexpr std::uint64_t hashRounds(std::uint64_t count)
{
    constexpr std::uint64_t blocks = (static_cast<std::uint64_t>(keySize) + Hash::size - 1) / Hash::size;
    return blocks * count;
}

/// Counts rounds for whoever waits.
class Rounds
{
public:
    Rounds(const Keybag::RoundsDone &told, std::uint64_t total) : m_told(told), m_total(total) {}

    void next()
    {
        if (++m_done % roundsBetweenReports == 0 && m_told)
            m_told(m_done, m_total);
    }

private:
    static constexpr std::uint64_t roundsBetweenReports = 1 << 18; // a tenth of a second

    const Keybag::RoundsDone &m_told;
    std::uint64_t m_total;
    std::uint64_t m_done = 0;
};

/// PBKDF2 (RFC 8018). The library's own runs to its end, which may be minutes away.
template <typename Hash>
QByteArray derive(const QByteArray &secret, std::uint32_t count, const QByteArray &salt, Rounds &rounds)
{
    typename Hash::Context context;
    Hash::setKey(&context, static_cast<std::size_t>(secret.size()), octets(secret));
    QByteArray key;
    for (std::uint32_t block = 1; key.size() < keySize; ++block) {
        std::uint8_t number[4];
        qToBigEndian(block, number);
        std::uint8_t digest[Hash::size];
        Hash::update(&context, static_cast<std::size_t>(salt.size()), octets(salt));
        Hash::update(&context, sizeof number, number);
        Hash::digest(&context, sizeof digest, digest);
        std::uint8_t sum[Hash::size];
        std::memcpy(sum, digest, sizeof sum);
        for (std::uint32_t round = 1; round < count; ++round) {
            Hash::update(&context, sizeof digest, digest);
            Hash::digest(&context, sizeof digest, digest);
            for (std::size_t i = 0; i < sizeof sum; ++i)
                sum[i] ^= digest[i];
            rounds.next();
        }
        key.append(reinterpret_cast<const char *>(sum), sizeof sum);
        wipe(digest, sizeof digest);
        wipe(sum, sizeof sum);
    }
    wipe(&context, sizeof context);
    key.resize(keySize);
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

Keybag::~Keybag()
{
    if (!m_classes.isDetached())
        return;
    for (Attributes &entry : m_classes)
        if (const auto key = entry.find("KEY"); key != entry.end())
            wipe(*key);
}

bool Keybag::hasDoubleProtection() const
{
    return m_attributes.contains("DPIC") && m_attributes.contains("DPSL");
}

void Keybag::requireWhole() const
{
    for (auto entry = m_classes.cbegin(); entry != m_classes.cend(); ++entry) {
        const qsizetype size = entry->value("WPKY").size();
        if (isPasswordProtected(*entry) && size != wrappedKeySize)
            throw damaged(QStringLiteral("the key of class %1 has %2 bytes").arg(entry.key()).arg(size));
    }
    if (!m_attributes.contains("SALT") || !m_attributes.contains("ITER"))
        throw damaged(QStringLiteral("SALT or ITER is missing"));
}

bool Keybag::unlock(const QByteArray &password, const RoundsDone &told)
{
    requireWhole();
    const std::uint32_t count = rounds(m_attributes, "ITER");

    const std::uint32_t outerCount = hasDoubleProtection() ? rounds(m_attributes, "DPIC") : 0;
    Rounds done(told, hashRounds<Sha256>(outerCount) + hashRounds<Sha1>(count));
    QByteArray secret = password;
    if (outerCount > 0)
        secret = derive<Sha256>(secret, outerCount, m_attributes.value("DPSL"), done);
    const WipedAtEnd wipedSecret(secret);
    QByteArray passwordKey = derive<Sha1>(secret, count, m_attributes.value("SALT"), done);
    const WipedAtEnd wipedKey(passwordKey);

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
    wipe(&context, sizeof context);
    wipe(block, sizeof block);
    return a == integrity ? plain : QByteArray();
}
