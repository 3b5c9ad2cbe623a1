#pragma once

#include "sample/cipher.h"

#include <QByteArray>
#include <QList>
#include <QtEndian>

/// Writes keybags with any lie that a test asks for.
namespace keybag_builder {

inline QByteArray number(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray item(const char *tag, const QByteArray &value)
{
    return tag + number(static_cast<quint32>(value.size())) + value;
}

struct ClassEntry
{
    quint32 number = 0;
    quint32 wrap = 2;
    QByteArray key; // 32 bytes, as it is after unlocking
};

struct Options
{
    QByteArray password = "secret";
    quint32 iter = 2;
    QByteArray salt = QByteArray(20, 's');
    bool doubleProtection = true;
    quint32 dpic = 3;
    QByteArray dpsl = QByteArray(20, 'd');
    QList<ClassEntry> classes = {{1, 2, QByteArray(32, '\x11')}, {4, 3, QByteArray(32, '\x44')}};
};

inline QByteArray passwordKey(const Options &options)
{
    return sample::passwordKey(options.password, options.doubleProtection ? options.dpsl : QByteArray(),
                               static_cast<int>(options.dpic), options.salt, static_cast<int>(options.iter));
}

inline QByteArray header(const Options &options)
{
    QByteArray out = item("VERS", number(4)) + item("TYPE", number(1)) + item("UUID", QByteArray(16, 'u')) +
                     item("HMCK", QByteArray(40, 'h')) + item("WRAP", number(1)) +
                     item("SALT", options.salt) + item("ITER", number(options.iter));
    if (options.doubleProtection)
        out += item("DPWT", number(0)) + item("DPIC", number(options.dpic)) + item("DPSL", options.dpsl);
    return out;
}

inline QByteArray build(const Options &options = {})
{
    const QByteArray wrappingKey = passwordKey(options);
    QByteArray out = header(options);
    for (const ClassEntry &entry : options.classes)
        out += item("UUID", QByteArray(16, 'c')) + item("CLAS", number(entry.number)) +
               item("WRAP", number(entry.wrap)) + item("KTYP", number(0)) +
               item("WPKY", sample::wrapKey(wrappingKey, entry.key));
    return out;
}

} // namespace keybag_builder
