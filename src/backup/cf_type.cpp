#include "backup/cf_type.h"

#include "backup/binary_plist.h"
#include "backup/plist_guard.h"
#include "base/apple_time.h"

#include <QLocale>
#include <QtEndian>

#include <plist/plist.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

namespace {
enum class Origin { Xml, Other };

/// Owns the library's tree.
struct Tree
{
    plist_t root;
    Origin origin;

    Tree(plist_t tree, Origin from) : root(tree), origin(from) {}
    ~Tree() { plist_free(root); }
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;
};
} // namespace

/// A value inside a tree that it keeps alive.
struct CFType::Node
{
    std::shared_ptr<Tree> tree;
    plist_t value = nullptr;

    static std::shared_ptr<Node> own(plist_t root, Origin origin = Origin::Other)
    {
        return root ? std::make_shared<Node>(Node{std::make_shared<Tree>(root, origin), root}) : nullptr;
    }

    /// XML has no UIDs: they are written as a dictionary with one key.
    plist_t uidInXml() const
    {
        if (tree->origin != Origin::Xml || plist_dict_get_size(value) != 1)
            return nullptr;
        const plist_t number = plist_dict_get_item(value, "CF$UID");
        return number && plist_get_node_type(number) == PLIST_UINT ? number : nullptr;
    }
};

namespace {
/// While it lives, the calling thread reads numbers with a point. The library reads fractions by the locale,
/// which a program of Qt takes from its user, and property lists do not.
class PointAsDecimalSign
{
public:
#ifdef Q_OS_UNIX
    PointAsDecimalSign() : m_locale(newlocale(LC_NUMERIC_MASK, "C", nullptr)), m_before(uselocale(m_locale))
    {
    }
    ~PointAsDecimalSign()
    {
        uselocale(m_before);
        if (m_locale)
            freelocale(m_locale);
    }
    PointAsDecimalSign(const PointAsDecimalSign &) = delete;
    PointAsDecimalSign &operator=(const PointAsDecimalSign &) = delete;

private:
    locale_t m_locale;
    locale_t m_before;
#endif
};

std::uint64_t unsignedValue(plist_t number)
{
    std::uint64_t value = 0;
    plist_get_uint_val(number, &value);
    return value;
}

QByteArray takeBytes(char *bytes, std::uint32_t size, void (*release)(char *))
{
    if (!bytes)
        return {};
    const QByteArray copy(bytes, static_cast<qsizetype>(size));
    release(bytes);
    return copy;
}

QByteArray toBinary(plist_t value)
{
    char *bytes = nullptr;
    std::uint32_t size = 0;
    plist_to_bin(value, &bytes, &size);
    return takeBytes(bytes, size, plist_to_bin_free);
}

QByteArray toXml(plist_t value)
{
    char *bytes = nullptr;
    std::uint32_t size = 0;
    plist_to_xml(value, &bytes, &size);
    return takeBytes(bytes, size, plist_to_xml_free);
}

/// The library's own access to dates ends in 2069, its binary form does not.
double secondsOfDate(plist_t date)
{
    const QByteArray bytes = toBinary(date);
    BinaryPlist plist;
    BinaryPlist::Object object;
    if (!plist.open(bytes) || !plist.object(plist.top(), object) || object.count != 8)
        return std::nan("");
    return qFromBigEndian<double>(object.payload);
}

plist_t dateOfSeconds(double seconds)
{
    // One object at 8, its offset at 17, the trailer.
    QByteArray bytes("bplist00\x33", 9);
    char number[sizeof seconds];
    qToBigEndian(seconds, number);
    bytes.append(number, sizeof number);
    bytes.append("\x08\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x01\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x11", 33);
    plist_t date = nullptr;
    plist_from_bin(bytes.constData(), static_cast<std::uint32_t>(bytes.size()), &date);
    return date;
}

template <typename Integer>
Integer inRange(qint64 value, Integer fallback)
{
    using Limits = std::numeric_limits<Integer>;
    return value < Limits::min() || value > Limits::max() ? fallback : static_cast<Integer>(value);
}
} // namespace

CFType::CFType() = default;
CFType::CFType(const CFType &) = default;
CFType::CFType(CFType &&) noexcept = default;
CFType &CFType::operator=(const CFType &) = default;
CFType &CFType::operator=(CFType &&) noexcept = default;
CFType::~CFType() = default;

CFType::CFType(std::shared_ptr<Node> node) : m_node(std::move(node)) {}

CFType CFType::parse(QByteArrayView bytes)
{
    plist_t root = nullptr;
    Origin origin = Origin::Other;
    if (bytes.startsWith("bplist")) {
        if (isSafeBinaryPlist(bytes))
            plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    } else if (isSafeXmlPlist(bytes)) {
        if (bytes.startsWith("\xEF\xBB\xBF"))
            bytes = bytes.sliced(3);
        origin = Origin::Xml;
        [[maybe_unused]] const PointAsDecimalSign point;
        plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    }
    return CFType(Node::own(root, origin));
}

QByteArray CFType::serialise(Format format) const
{
    if (!m_node)
        return {};
    return format == Format::Xml ? toXml(m_node->value) : toBinary(m_node->value);
}

CFType::Kind CFType::kind() const
{
    if (!m_node)
        return Kind::Empty;
    switch (plist_get_node_type(m_node->value)) {
    case PLIST_BOOLEAN:
        return Kind::Boolean;
    case PLIST_UINT:
    case PLIST_REAL:
        return Kind::Number;
    case PLIST_STRING:
        return Kind::String;
    case PLIST_ARRAY:
        return Kind::Array;
    case PLIST_DICT:
        return m_node->uidInXml() ? Kind::Uid : Kind::Dictionary;
    case PLIST_DATE:
        return Kind::Date;
    case PLIST_DATA:
        return Kind::Data;
    case PLIST_UID:
        return Kind::Uid;
    default:
        return Kind::Null;
    }
}

bool CFType::isReal() const
{
    return m_node && plist_get_node_type(m_node->value) == PLIST_REAL;
}

qint16 CFType::toInt16(qint16 fallback) const
{
    return inRange(toInt64(fallback), fallback);
}

qint32 CFType::toInt32(qint32 fallback) const
{
    return inRange(toInt64(fallback), fallback);
}

qint64 CFType::toInt64(qint64 fallback) const
{
    if (!isNumber())
        return fallback;
    if (plist_get_node_type(m_node->value) == PLIST_UINT)
        return static_cast<qint64>(unsignedValue(m_node->value));
    constexpr double bound = 9223372036854775808.0; // 2^63
    const double value = toDouble();
    return value >= -bound && value < bound ? static_cast<qint64>(value) : fallback;
}

double CFType::toDouble(double fallback) const
{
    if (!isNumber())
        return fallback;
    if (plist_get_node_type(m_node->value) == PLIST_UINT)
        return static_cast<double>(toInt64());
    double value = 0;
    plist_get_real_val(m_node->value, &value);
    return value;
}

bool CFType::toBool(bool fallback) const
{
    if (!isBoolean())
        return fallback;
    std::uint8_t value = 0;
    plist_get_bool_val(m_node->value, &value);
    return value != 0;
}

QString CFType::toString(const QString &fallback) const
{
    if (!isString())
        return fallback;
    std::uint64_t size = 0;
    const char *text = plist_get_string_ptr(m_node->value, &size);
    return text ? QString::fromUtf8(text, static_cast<qsizetype>(size)) : QString();
}

QByteArray CFType::toByteArray(const QByteArray &fallback) const
{
    if (!isData())
        return fallback;
    std::uint64_t size = 0;
    const char *bytes = plist_get_data_ptr(m_node->value, &size);
    return bytes ? QByteArray(bytes, static_cast<qsizetype>(size)) : QByteArray();
}

QDateTime CFType::toDateTime(const QDateTime &fallback) const
{
    if (!isDate())
        return fallback;
    // Beyond the year 9999 there is no text for a date.
    constexpr double limit = 253402300800.0;
    const double seconds = secondsOfDate(m_node->value) + static_cast<double>(appleEpochUnix);
    if (!(std::abs(seconds) < limit))
        return fallback;
    return QDateTime::fromMSecsSinceEpoch(std::llround(seconds * 1000), Qt::UTC);
}

QString CFType::toText() const
{
    switch (kind()) {
    case Kind::Number:
        return plist_get_node_type(m_node->value) == PLIST_UINT
                   ? QString::number(toInt64())
                   : QString::number(toDouble(), 'g', QLocale::FloatingPointShortest);
    case Kind::Boolean:
        return toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case Kind::Date:
        return toDateTime().toString(Qt::ISODate);
    case Kind::Data:
        return QString::fromLatin1(toByteArray().toBase64());
    case Kind::String:
        return toString();
    default:
        return {};
    }
}

quint32 CFType::uid(quint32 fallback) const
{
    if (!isUid())
        return fallback;
    std::uint64_t value = 0;
    if (plist_get_node_type(m_node->value) == PLIST_UID)
        plist_get_uid_val(m_node->value, &value);
    else
        value = unsignedValue(m_node->uidInXml());
    return value > std::numeric_limits<quint32>::max() ? fallback : static_cast<quint32>(value);
}

CFType CFType::get(const QString &key) const
{
    if (!isDictionary())
        return {};
    const plist_t value = plist_dict_get_item(m_node->value, key.toUtf8().constData());
    return value ? CFType(std::make_shared<Node>(Node{m_node->tree, value})) : CFType();
}

QStringList CFType::keys() const
{
    QStringList names;
    if (!isDictionary())
        return names;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(m_node->value, &iterator);
    for (;;) {
        char *key = nullptr;
        plist_dict_next_item(m_node->value, iterator, &key, nullptr);
        if (!key)
            break;
        names.append(QString::fromUtf8(key));
        std::free(key);
    }
    std::free(iterator);
    return names;
}

qsizetype CFType::count() const
{
    switch (kind()) {
    case Kind::Dictionary:
        return plist_dict_get_size(m_node->value);
    case Kind::Array:
        return plist_array_get_size(m_node->value);
    default:
        return 0;
    }
}

CFType CFType::at(qsizetype index) const
{
    if (!isArray() || index < 0 || index >= count())
        return {};
    const plist_t value = plist_array_get_item(m_node->value, static_cast<std::uint32_t>(index));
    return value ? CFType(std::make_shared<Node>(Node{m_node->tree, value})) : CFType();
}

CFType CFType::fromBool(bool value)
{
    return CFType(Node::own(plist_new_bool(value ? 1 : 0)));
}

CFType CFType::fromInt(qint64 value)
{
    return CFType(Node::own(plist_new_uint(static_cast<std::uint64_t>(value))));
}

CFType CFType::fromDouble(double value)
{
    return CFType(Node::own(plist_new_real(value)));
}

CFType CFType::fromString(const QString &value)
{
    return CFType(Node::own(plist_new_string(value.toUtf8().constData())));
}

CFType CFType::fromByteArray(const QByteArray &value)
{
    return CFType(Node::own(plist_new_data(value.constData(), static_cast<std::uint64_t>(value.size()))));
}

CFType CFType::fromDateTime(const QDateTime &value)
{
    const double seconds = static_cast<double>(value.toMSecsSinceEpoch()) / 1000;
    return CFType(Node::own(dateOfSeconds(seconds - static_cast<double>(appleEpochUnix))));
}

CFType CFType::fromUid(quint32 value)
{
    return CFType(Node::own(plist_new_uid(value)));
}

CFType CFType::newDictionary()
{
    return CFType(Node::own(plist_new_dict()));
}

CFType CFType::newArray()
{
    return CFType(Node::own(plist_new_array()));
}

void CFType::set(const QString &key, const CFType &value)
{
    if (!isDictionary() || value.isEmpty())
        return;
    const QByteArray name = key.toUtf8();
    const plist_t copy = plist_copy(value.m_node->value);
    // Replacing frees the old item, which somebody may still hold: then a new tree takes over.
    if (plist_dict_get_item(m_node->value, name.constData()))
        *m_node = *Node::own(plist_copy(m_node->value));
    plist_dict_set_item(m_node->value, name.constData(), copy);
}

void CFType::append(const CFType &value)
{
    if (isArray() && !value.isEmpty())
        plist_array_append_item(m_node->value, plist_copy(value.m_node->value));
}
