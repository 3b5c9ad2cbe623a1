#pragma once

#include <QByteArray>
#include <QStringConverter>

/// Appends text as UTF-8 without a temporary. Halves of surrogate pairs become U+FFFD.
inline void appendUtf8(QByteArray &out, QStringView text)
{
    QStringEncoder encoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const qsizetype before = out.size();
    out.resize(before + encoder.requiredSpace(text.size()));
    const char *end = encoder.appendToBuffer(out.data() + before, text);
    out.truncate(end - out.constData());
}
