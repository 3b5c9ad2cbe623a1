#pragma once

#include "sample/seeded_generator.h"

#include <map>

namespace sample {

/// The keys of an encrypted sample: a class key for each of the classes 1 to 11, and the bytes that carry
/// them.
class KeybagWriter
{
public:
    /// Files of this class stay locked: its key is wrapped for the device alone.
    static constexpr int deviceOnlyClass = 5;

    struct Rounds
    {
        int outer = 0; // 0: no outer derivation
        int inner = 0;
    };

    KeybagWriter(const QByteArray &password, Rounds rounds, SeededGenerator chance);

    /// "BackupKeyBag" of Manifest.plist: items of a 4-character tag, a big-endian length and the value.
    const QByteArray &bytes() const { return m_bytes; }

    /// A file key as the catalogue keeps it: the class as 4 bytes, little-endian, and the wrapped key.
    QByteArray wrapForClass(int protectionClass, const QByteArray &fileKey) const;

private:
    void append(const char *tag, const QByteArray &value);
    void append(const char *tag, quint32 value);
    void appendClass(int protectionClass, const QByteArray &passwordKey, const QByteArray &deviceKey,
                     SeededGenerator &chance);

    std::map<int, QByteArray> m_classKeys;
    QByteArray m_bytes;
};

} // namespace sample
