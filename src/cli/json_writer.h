#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <optional>

/// Writes JSON piece by piece into bytes that the caller owns: UTF-8 on one line, keys in the order they
/// come. Control characters, line ends of any kind and characters that turn the direction of what follows are
/// escaped, so that a record is one line, and reads as it stands, for everybody.
class JsonWriter
{
public:
    explicit JsonWriter(QByteArray &to) : m_to(to) {}

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();

    void key(const char *name);
    void text(const QString &value);
    /// UTF-8 as it stands; bytes that are none become U+FFFD.
    void utf8(QByteArrayView value);
    void number(std::int64_t value);
    void boolean(bool value);
    void null();
    /// Unix seconds as "2012-01-01T00:00:00Z"; null when there is none or no calendar has it.
    void instant(std::optional<std::int64_t> unixSeconds);

    void field(const char *name, const QString &value) { key(name), text(value); }
    void field(const char *name, std::int64_t value) { key(name), number(value); }

private:
    QByteArray &m_to;
    bool m_needsComma = false;

    void beginValue();
    void appendEscaped(QByteArrayView utf8);
};
