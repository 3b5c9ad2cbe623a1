#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QMap>

#include <cstdint>
#include <functional>

/// The class keys of an encrypted backup: parsed from the "BackupKeyBag" data, unlocked with the password.
class Keybag
{
public:
    Keybag() = default;
    Keybag(const Keybag &) = default;
    Keybag(Keybag &&) = default;
    Keybag &operator=(const Keybag &) = default;
    Keybag &operator=(Keybag &&) = default;
    /// The last copy wipes the keys.
    ~Keybag();

    using Attributes = QHash<QByteArray, QByteArray>; // tag -> value

    /// Throws Error when the bytes are no keybag (cut off inside an item, no class entry at all).
    static Keybag parse(QByteArrayView bytes);

    /// Throws Error when the keybag lacks what unlocking needs (SALT, ITER), or a key that the password protects
    /// is cut: no password opens it then.
    void requireWhole() const;

    /// Told how far the derivation of a key is, about ten times a second; what it throws, such as Cancelled, ends
    /// the derivation. Devices ask for rounds that take seconds, and a keybag may ask for many more.
    using RoundsDone = std::function<void(std::uint64_t done, std::uint64_t total)>;

    /// Derives the password key and unwraps every class key that the password protects. False: wrong
    /// password. Throws Error when the keybag lacks what unlocking needs (SALT, ITER) or asks for an absurd
    /// number of rounds, and what `told` throws.
    bool unlock(const QByteArray &password, const RoundsDone &told = {});
    bool isUnlocked() const { return m_unlocked; }

    /// True when both "DPIC" and "DPSL" are there: then Manifest.db is itself encrypted.
    bool hasDoubleProtection() const;

    /// The key of a file of this class, empty when the class has no key, or the wrapped key is not 40 bytes,
    /// or does not unwrap. `wrapped` is without its 4 bytes of prefix.
    QByteArray unwrapFileKey(std::uint32_t protectionClass, QByteArrayView wrapped) const;
    /// The same, trying every unlocked class in ascending order.
    QByteArray unwrapWithAnyClass(QByteArrayView wrapped) const;

    const Attributes &attributes() const { return m_attributes; }
    const QMap<std::uint32_t, Attributes> &classes() const { return m_classes; }

private:
    Attributes m_attributes;
    QMap<std::uint32_t, Attributes> m_classes;
    bool m_unlocked = false;
};

/// RFC 3394 with a 256-bit key-encryption key; empty when the integrity check fails or the sizes do not fit.
QByteArray aesKeyUnwrap(const QByteArray &key, QByteArrayView wrapped);
