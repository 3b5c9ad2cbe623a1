#pragma once

#include <QByteArray>
#include <QString>

namespace sample {

/// The only source of chance in a sample: splitmix64, whose sequence is fixed by its seed on every platform.
class SeededGenerator
{
public:
    explicit SeededGenerator(quint64 seed) : m_state(seed) {}

    quint64 next();
    /// A value from 0 to limit - 1; limit is at least 1.
    int below(int limit);
    /// A value from 0 to limit - 1 that prefers small ones: the first tenth gets nearly half of all.
    int skewedBelow(int limit);
    bool oneIn(int chances) { return below(chances) == 0; }
    QByteArray bytes(int length);
    /// Upper-case hexadecimal in the five groups of a version 4 identifier.
    QByteArray uuid();
    template <typename List>
    const auto &pick(const List &list)
    {
        return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
    }

    /// A generator of its own for one purpose, so that more of one kind of data leaves the others as they
    /// are.
    SeededGenerator fork(const char *purpose) const;

private:
    quint64 m_state;
};

} // namespace sample
