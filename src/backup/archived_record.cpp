#include "backup/archived_record.h"

#include "backup/binary_plist.h"
#include "backup/cf_type.h"
#include "backup/plist_guard.h"

#include <QStringDecoder>

#include <cstring>
#include <limits>
#include <optional>

namespace {
enum class Field {
    Target,
    Digest,
    EncryptionKey,
    Mode,
    InodeNumber,
    UserID,
    GroupID,
    LastModified,
    LastStatusChange,
    Birth,
    Size,
    ProtectionClass,
    Count
};
// What the tree of a record may take: each has some thirty objects, and a catalogue may have a million of them that
// unfold, by references to references, to as much as is allowed.
constexpr std::uint64_t treeBytes = 64 * 1024;
constexpr std::uint64_t treeBytesPerByte = 16;
constexpr int fieldCount = static_cast<int>(Field::Count);

constexpr QByteArrayView fieldNames[fieldCount] = {
    "Target",  "Digest",       "EncryptionKey",    "Mode",  "InodeNumber", "UserID",
    "GroupID", "LastModified", "LastStatusChange", "Birth", "Size",        "ProtectionClass"};

bool equals(const BinaryPlist::Object &text, QByteArrayView name)
{
    return text.count == static_cast<std::uint64_t>(name.size()) &&
           std::memcmp(text.payload, name.data(), static_cast<std::size_t>(name.size())) == 0;
}

/// The field a key names. Lengths tell almost all of them apart, so one comparison is enough.
Field fieldOf(const BinaryPlist::Object &key)
{
    const auto is = [&](Field field) { return equals(key, fieldNames[static_cast<int>(field)]); };
    const auto pick = [&](Field first, Field second) {
        return is(first) ? first : is(second) ? second : Field::Count;
    };
    switch (key.count) {
    case 4:
        return pick(Field::Mode, Field::Size);
    case 5:
        return is(Field::Birth) ? Field::Birth : Field::Count;
    case 6:
        return is(Field::Target) ? Field::Target : pick(Field::Digest, Field::UserID);
    case 7:
        return is(Field::GroupID) ? Field::GroupID : Field::Count;
    case 11:
        return is(Field::InodeNumber) ? Field::InodeNumber : Field::Count;
    case 12:
        return is(Field::LastModified) ? Field::LastModified : Field::Count;
    case 13:
        return is(Field::EncryptionKey) ? Field::EncryptionKey : Field::Count;
    case 15:
        return is(Field::ProtectionClass) ? Field::ProtectionClass : Field::Count;
    case 16:
        return is(Field::LastStatusChange) ? Field::LastStatusChange : Field::Count;
    default:
        return Field::Count;
    }
}

/// A value that its field cannot hold is as good as missing.
template <typename Integer>
Integer fitting(std::int64_t value)
{
    using Limits = std::numeric_limits<Integer>;
    if constexpr (sizeof(Integer) == sizeof value)
        return value < 0 ? 0 : static_cast<Integer>(value);
    else
        return value < 0 || value > std::int64_t{Limits::max()} ? Integer{0} : static_cast<Integer>(value);
}

/// `number(field)` gives an integer, 0 when there is none.
template <typename Numbers>
void setNumbers(FileRecord &record, const Numbers &number)
{
    record.mode = fitting<std::uint16_t>(number(Field::Mode));
    record.inode = static_cast<std::uint64_t>(number(Field::InodeNumber)); // APFS uses all 64 bits
    record.userId = fitting<std::uint32_t>(number(Field::UserID));
    record.groupId = fitting<std::uint32_t>(number(Field::GroupID));
    record.lastModified = fitting<std::uint32_t>(number(Field::LastModified));
    record.lastStatusChange = fitting<std::uint32_t>(number(Field::LastStatusChange));
    record.birth = fitting<std::uint32_t>(number(Field::Birth));
    record.sizeBytes = fitting<std::uint64_t>(number(Field::Size));
    record.protectionClass = fitting<std::uint8_t>(number(Field::ProtectionClass));
}

/// The archive as NSKeyedArchiver writes it: binary, with names in ASCII. Anything else is left to the
/// general reader, which costs a hundred times as much.
class BinaryArchive
{
public:
    bool open(QByteArrayView archive);
    bool copyTo(FileRecord &record) const;

private:
    using Object = BinaryPlist::Object;
    using Kind = BinaryPlist::Kind;

    BinaryPlist m_plist;
    Object m_objects;                        // the array "$objects"
    std::uint64_t m_values[fieldCount] = {}; // object index of each field's value
    unsigned m_present = 0;                  // one bit a field

    bool find(const Object &dictionary, QByteArrayView name, Object &value) const;
    bool follow(const Object &uid, Object &out) const;
    bool collect(const Object &record);
    bool value(Field field, Object &out) const;
    std::int64_t number(Field field) const;
    std::optional<QByteArray> text(Field field) const;
    QByteArray data(Field field) const;
};

bool BinaryArchive::find(const Object &dictionary, QByteArrayView name, Object &value) const
{
    Object key;
    for (std::uint64_t i = 0; i < dictionary.count; ++i) {
        if (m_plist.object(m_plist.reference(dictionary, i), key) && key.kind == Kind::Ascii &&
            equals(key, name))
            return m_plist.object(m_plist.reference(dictionary, dictionary.count + i), value);
    }
    return false;
}

/// UID 0 is "$null", the archive's way to say that there is nothing.
bool BinaryArchive::follow(const Object &uid, Object &out) const
{
    const std::uint64_t index = uid.number();
    return index != 0 && index < m_objects.count && m_plist.object(m_plist.reference(m_objects, index), out);
}

bool BinaryArchive::open(QByteArrayView archive)
{
    Object archiveObject;
    Object topObject;
    Object root;
    Object record;
    return m_plist.open(archive) && m_plist.object(m_plist.top(), archiveObject) &&
           archiveObject.kind == Kind::Dictionary && find(archiveObject, "$objects", m_objects) &&
           m_objects.kind == Kind::Array && find(archiveObject, "$top", topObject) &&
           topObject.kind == Kind::Dictionary && find(topObject, "root", root) && root.kind == Kind::Uid &&
           follow(root, record) && record.kind == Kind::Dictionary && collect(record);
}

/// False for keys that are no plain names, and for a name that stands twice.
bool BinaryArchive::collect(const Object &record)
{
    Object key;
    for (std::uint64_t i = 0; i < record.count; ++i) {
        if (!m_plist.object(m_plist.reference(record, i), key) || key.kind != Kind::Ascii)
            return false;
        const Field field = fieldOf(key);
        if (field == Field::Count)
            continue;
        const unsigned bit = 1U << static_cast<int>(field);
        if (m_present & bit)
            return false;
        m_present |= bit;
        m_values[static_cast<int>(field)] = m_plist.reference(record, record.count + i);
    }
    return true;
}

bool BinaryArchive::value(Field field, Object &out) const
{
    if (!(m_present & 1U << static_cast<int>(field)) ||
        !m_plist.object(m_values[static_cast<int>(field)], out))
        return false;
    return out.kind != Kind::Uid || follow(out, out);
}

std::int64_t BinaryArchive::number(Field field) const
{
    Object object;
    if (!value(field, object) || object.kind != Kind::Integer)
        return 0;
    return static_cast<std::int64_t>(object.number());
}

/// Nothing when the text is damaged, which is for the general reader to judge.
std::optional<QByteArray> BinaryArchive::text(Field field) const
{
    Object object;
    if (!value(field, object))
        return QByteArray();
    if (object.kind == Kind::Ascii)
        return QString::fromUtf8(object.bytes()).toUtf8();
    if (object.kind != Kind::Utf16)
        return QByteArray();
    QStringDecoder decode(QStringDecoder::Utf16BE);
    const QString text = decode(QByteArrayView(object.payload, static_cast<qsizetype>(2 * object.count)));
    return text.isValidUtf16() ? std::optional(text.toUtf8()) : std::nullopt;
}

QByteArray BinaryArchive::data(Field field) const
{
    Object object;
    if (!value(field, object))
        return {};
    if (object.kind == Kind::Dictionary) {
        Object inner;
        if (!find(object, "NS.data", inner))
            return {};
        object = inner;
        if (object.kind == Kind::Uid && !follow(object, object))
            return {};
    }
    return object.kind == Kind::Data ? object.bytes().toByteArray() : QByteArray();
}

bool BinaryArchive::copyTo(FileRecord &record) const
{
    std::optional<QByteArray> target = text(Field::Target);
    if (!target)
        return false;
    record.target = *std::move(target);
    setNumbers(record, [this](Field field) { return number(field); });
    record.digest = data(Field::Digest);
    record.encryptionKey = data(Field::EncryptionKey);
    return true;
}

/// The same through a tree of values: for XML, and for whatever the quick way does not know.
class GeneralArchive
{
public:
    bool open(QByteArrayView archive)
    {
        const auto size = static_cast<std::uint64_t>(archive.size());
        if (archive.startsWith("bplist") && !isSafeBinaryPlist(archive, treeBytes + treeBytesPerByte * size))
            return false;
        const CFType top = CFType::parse(archive);
        m_objects = top.get(QStringLiteral("$objects"));
        const CFType root = top.get(QStringLiteral("$top")).get(QStringLiteral("root"));
        if (!m_objects.isArray() || !root.isUid())
            return false;
        m_record = follow(root);
        return m_record.isDictionary();
    }

    void copyTo(FileRecord &record) const
    {
        setNumbers(record, [this](Field field) {
            const CFType found = value(field);
            return found.isReal() ? 0 : found.toInt64();
        });
        record.target = value(Field::Target).toString().toUtf8();
        record.digest = data(Field::Digest);
        record.encryptionKey = data(Field::EncryptionKey);
    }

private:
    CFType m_objects;
    CFType m_record;

    CFType follow(const CFType &uid) const { return uid.uid() == 0 ? CFType() : m_objects.at(uid.uid()); }

    CFType value(Field field) const
    {
        const CFType direct = m_record.get(QString::fromLatin1(fieldNames[static_cast<int>(field)]));
        return direct.isUid() ? follow(direct) : direct;
    }

    QByteArray data(Field field) const
    {
        const CFType found = value(field);
        if (!found.isDictionary())
            return found.toByteArray();
        const CFType inner = found.get(QStringLiteral("NS.data"));
        return (inner.isUid() ? follow(inner) : inner).toByteArray();
    }
};
} // namespace

bool ArchivedRecordReader::readGeneral(QByteArrayView archive, FileRecord &record)
{
    GeneralArchive general;
    if (!general.open(archive))
        return false;
    general.copyTo(record);
    return true;
}

bool ArchivedRecordReader::read(QByteArrayView archive, FileRecord &record)
{
    BinaryArchive quick;
    return (quick.open(archive) && quick.copyTo(record)) || readGeneral(archive, record);
}
