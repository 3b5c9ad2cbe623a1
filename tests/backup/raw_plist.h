#pragma once

#include <QByteArray>
#include <QList>

/// Assembles a binary property list from objects that are given as bytes, so that any of its numbers can lie.
struct RawPlist
{
    QList<QByteArray> objects;
    int offsetSize = 2;
    int referenceSize = 2;
    quint64 top = 0;
    qint64 objectCount = -1;   // -1: as many as there are
    qint64 tablePosition = -1; // -1: where it is
    QList<quint64> offsets;    // empty: where the objects are

    static QByteArray number(quint64 value, int size)
    {
        QByteArray bytes;
        for (int shift = (size - 1) * 8; shift >= 0; shift -= 8)
            bytes += static_cast<char>(value >> shift);
        return bytes;
    }

    /// A marker with its count, and the bytes behind it.
    static QByteArray object(int kind, quint64 count, const QByteArray &bytes)
    {
        if (count < 15)
            return QByteArray(1, static_cast<char>(kind << 4 | static_cast<int>(count))) + bytes;
        return QByteArray(1, static_cast<char>(kind << 4 | 15)) + '\x13' + number(count, 8) + bytes;
    }
    static QByteArray ascii(const QByteArray &text)
    {
        return object(0x5, static_cast<quint64>(text.size()), text);
    }
    QByteArray references(const QList<quint64> &indexes) const
    {
        QByteArray bytes;
        for (const quint64 index : indexes)
            bytes += number(index, referenceSize);
        return bytes;
    }
    QByteArray array(const QList<quint64> &items) const
    {
        return object(0xA, static_cast<quint64>(items.size()), references(items));
    }

    QByteArray bytes() const
    {
        QByteArray out = "bplist00";
        QList<quint64> places;
        for (const QByteArray &object : objects) {
            places.append(static_cast<quint64>(out.size()));
            out += object;
        }
        const qint64 table = out.size();
        for (const quint64 place : offsets.isEmpty() ? places : offsets)
            out += number(place, offsetSize);
        out += QByteArray(6, '\0') + static_cast<char>(offsetSize) + static_cast<char>(referenceSize);
        out += number(static_cast<quint64>(objectCount < 0 ? objects.size() : objectCount), 8);
        out += number(top, 8) + number(static_cast<quint64>(tablePosition < 0 ? table : tablePosition), 8);
        return out;
    }
};
