#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <memory>

/// One property-list value: dictionary, array, string, number, boolean, date, data or UID; the empty value is
/// none of them. Copies share the value by reference; a value taken out of a container keeps the container
/// alive. Readers give the default when the value is empty or of another kind. Dates are UTC.
class CFType
{
public:
    enum class Format { Xml = 100, Binary = 200 };
    enum class Kind { Empty, Null, Number, Boolean, String, Data, Date, Dictionary, Array, Uid };

    CFType();
    CFType(const CFType &);
    CFType(CFType &&) noexcept;
    CFType &operator=(const CFType &);
    CFType &operator=(CFType &&) noexcept;
    ~CFType();

    /// Parses XML or binary; the empty value when the bytes are no property list. Damaged and hostile bytes
    /// neither crash nor hang it, and take memory in proportion to their size.
    static CFType parse(QByteArrayView bytes);
    QByteArray serialise(Format format) const;

    Kind kind() const;
    bool isEmpty() const { return kind() == Kind::Empty; }
    bool isNumber() const { return kind() == Kind::Number; }
    /// True for a number that is kept as a floating-point one.
    bool isReal() const;
    bool isBoolean() const { return kind() == Kind::Boolean; }
    bool isString() const { return kind() == Kind::String; }
    bool isData() const { return kind() == Kind::Data; }
    bool isDate() const { return kind() == Kind::Date; }
    bool isDictionary() const { return kind() == Kind::Dictionary; }
    bool isArray() const { return kind() == Kind::Array; }
    bool isUid() const { return kind() == Kind::Uid; }

    qint16 toInt16(qint16 fallback = 0) const;
    qint32 toInt32(qint32 fallback = 0) const;
    qint64 toInt64(qint64 fallback = 0) const;
    double toDouble(double fallback = 0) const;
    bool toBool(bool fallback = false) const;
    QString toString(const QString &fallback = {}) const;
    QByteArray toByteArray(const QByteArray &fallback = {}) const;
    QDateTime toDateTime(const QDateTime &fallback = {}) const;
    /// Numbers, booleans, dates, data and strings as text.
    QString toText() const;
    quint32 uid(quint32 fallback = 0) const;

    /// Dictionary: the value of a key, empty when absent.
    CFType get(const QString &key) const;
    QStringList keys() const;
    /// Number of entries of a dictionary or an array, else 0.
    qsizetype count() const;
    /// Array: the item at an index, empty when there is none.
    CFType at(qsizetype index) const;

    static CFType fromBool(bool value);
    static CFType fromInt(qint64 value);
    static CFType fromDouble(double value);
    static CFType fromString(const QString &value);
    static CFType fromByteArray(const QByteArray &value);
    static CFType fromDateTime(const QDateTime &value);
    static CFType fromUid(quint32 value);
    static CFType newDictionary();
    static CFType newArray();
    /// For what newDictionary() and newArray() made: puts a copy of the value in. The empty value changes
    /// nothing.
    void set(const QString &key, const CFType &value);
    void append(const CFType &value);

private:
    struct Node;
    std::shared_ptr<Node> m_node;
    explicit CFType(std::shared_ptr<Node> node);
};
