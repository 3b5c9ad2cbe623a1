#pragma once

#include <QByteArray>

class QIODevice;

namespace sample {

/// AES-256-CBC with an initialisation vector of zeros, as a stream. Ends with PKCS#7 padding unless told
/// otherwise.
QByteArray encryptContent(const QByteArray &key, const QByteArray &plain, bool padded = true);

/// The same from one device to another, without holding the content. Throws Error when either fails.
void encryptContent(const QByteArray &key, QIODevice &plain, QIODevice &encrypted);

/// AES-128-CBC with the initialisation vector 00 01 .. 0F and PKCS#7 padding: the catalogue records of early
/// iOS 10.
QByteArray encryptDescriptor(const QByteArray &key, const QByteArray &plain);

/// RFC 3394 with a 256-bit key-encryption key; eight bytes longer than what is wrapped.
QByteArray wrapKey(const QByteArray &kek, const QByteArray &key);

/// The password key of a keybag. The outer derivation (SHA-256) is left out when `outerSalt` is empty.
QByteArray passwordKey(const QByteArray &password, const QByteArray &outerSalt, int outerRounds,
                       const QByteArray &salt, int rounds);

} // namespace sample
