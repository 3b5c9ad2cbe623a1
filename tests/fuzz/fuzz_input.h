#pragma once

#include <QByteArrayView>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

inline QByteArrayView fuzzInput(const std::uint8_t *data, std::size_t size)
{
    return {data, static_cast<qsizetype>(size)};
}

/// A promise of the reader that holds for any bytes.
inline void require(bool holds, const char *promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}
