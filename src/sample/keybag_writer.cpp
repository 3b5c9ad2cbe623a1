#include "sample/keybag_writer.h"

#include "sample/cipher.h"

#include <QtEndian>

namespace sample {

namespace {

template <typename Integer>
QByteArray bigEndian(Integer value)
{
    QByteArray bytes(sizeof value, Qt::Uninitialized);
    qToBigEndian(value, bytes.data());
    return bytes;
}

} // namespace

KeybagWriter::KeybagWriter(const QByteArray &password, Rounds rounds, SeededGenerator chance)
{
    const QByteArray salt = chance.bytes(20);
    const QByteArray outerSalt = rounds.outer > 0 ? chance.bytes(20) : QByteArray();
    const QByteArray deviceKey = chance.bytes(32);
    append("VERS", rounds.outer > 0 ? 5 : 3);
    append("TYPE", 1);
    append("UUID", chance.bytes(16));
    append("HMCK", chance.bytes(40));
    append("WRAP", quint32(0));
    append("SALT", salt);
    append("ITER", static_cast<quint32>(rounds.inner));
    if (rounds.outer > 0) {
        append("DPWT", quint32(0));
        append("DPIC", static_cast<quint32>(rounds.outer));
        append("DPSL", outerSalt);
    }
    const QByteArray unlocking = passwordKey(password, outerSalt, rounds.outer, salt, rounds.inner);
    for (int protectionClass = 1; protectionClass <= 11; ++protectionClass)
        appendClass(protectionClass, unlocking, deviceKey, chance);
}

void KeybagWriter::append(const char *tag, const QByteArray &value)
{
    m_bytes += tag;
    m_bytes += bigEndian(static_cast<quint32>(value.size()));
    m_bytes += value;
}

void KeybagWriter::append(const char *tag, quint32 value)
{
    append(tag, bigEndian(value));
}

void KeybagWriter::appendClass(int protectionClass, const QByteArray &passwordKey,
                               const QByteArray &deviceKey, SeededGenerator &chance)
{
    // Bit 0 says wrapped for the device, bit 1 wrapped with the password; 3 is what backups have for some
    // classes although the password key alone opens them.
    const bool deviceOnly = protectionClass == deviceOnlyClass;
    const quint32 wrap = deviceOnly ? 1 : protectionClass >= 9 ? 3 : 2;
    const QByteArray classKey = chance.bytes(32);
    m_classKeys[protectionClass] = classKey;
    append("UUID", chance.bytes(16));
    append("CLAS", static_cast<quint32>(protectionClass));
    append("WRAP", wrap);
    append("KTYP", quint32(0));
    append("WPKY", wrapKey(deviceOnly ? deviceKey : passwordKey, classKey));
}

QByteArray KeybagWriter::wrapForClass(int protectionClass, const QByteArray &fileKey) const
{
    QByteArray prefix(4, Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(protectionClass), prefix.data());
    return prefix + wrapKey(m_classKeys.at(protectionClass), fileKey);
}

} // namespace sample
