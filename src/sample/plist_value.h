#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <variant>
#include <vector>

namespace sample {

struct PlistDate
{
    double appleSeconds = 0;
};

struct PlistUid
{
    quint32 value = 0;
};

/// One value of a property list, built in memory and written once.
class PlistValue
{
public:
    using Array = std::vector<PlistValue>;
    using Dictionary = std::vector<std::pair<QString, PlistValue>>;
    using Variant =
        std::variant<bool, qint64, double, PlistDate, PlistUid, QByteArray, QString, Array, Dictionary>;

    PlistValue(bool value) : m_value(value) {}
    PlistValue(int value) : m_value(qint64(value)) {}
    PlistValue(qint64 value) : m_value(value) {}
    PlistValue(double value) : m_value(value) {}
    PlistValue(PlistDate value) : m_value(value) {}
    PlistValue(PlistUid value) : m_value(value) {}
    PlistValue(const QByteArray &value) : m_value(value) {}
    PlistValue(const QString &value) : m_value(value) {}
    PlistValue(Array value) : m_value(std::move(value)) {}
    PlistValue(Dictionary value) : m_value(std::move(value)) {}
    PlistValue(const char *) = delete;

    const Variant &variant() const { return m_value; }

private:
    Variant m_value;
};

/// The value as a binary property list.
QByteArray binaryPlist(const PlistValue &root);

/// The value as an XML property list. UID values do not exist there and are written as numbers.
QByteArray xmlPlist(const PlistValue &root);

} // namespace sample
