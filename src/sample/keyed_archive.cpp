#include "sample/keyed_archive.h"

#include "sample/catalogue_record.h"

namespace sample {

KeyedArchive::KeyedArchive() : m_objects{PlistValue(QStringLiteral("$null"))} {}

PlistUid KeyedArchive::add(PlistValue object)
{
    m_objects.push_back(std::move(object));
    return PlistUid{static_cast<quint32>(m_objects.size() - 1)};
}

void KeyedArchive::set(PlistUid reference, PlistValue object)
{
    m_objects[reference.value] = std::move(object);
}

PlistUid KeyedArchive::addClass(const QStringList &names)
{
    PlistValue::Array classes;
    for (const QString &name : names)
        classes.emplace_back(name);
    return add(PlistValue::Dictionary{{QStringLiteral("$classname"), names.first()},
                                      {QStringLiteral("$classes"), std::move(classes)}});
}

QByteArray KeyedArchive::finish(PlistUid root) const
{
    return binaryPlist(PlistValue::Dictionary{
        {QStringLiteral("$version"), 100000},
        {QStringLiteral("$archiver"), QStringLiteral("NSKeyedArchiver")},
        {QStringLiteral("$top"), PlistValue::Dictionary{{QStringLiteral("root"), root}}},
        {QStringLiteral("$objects"), m_objects}});
}

namespace {

PlistUid addData(KeyedArchive &archive, const QByteArray &bytes)
{
    const PlistUid type = archive.addClass(
        {QStringLiteral("NSMutableData"), QStringLiteral("NSData"), QStringLiteral("NSObject")});
    return archive.add(
        PlistValue::Dictionary{{QStringLiteral("NS.data"), bytes}, {QStringLiteral("$class"), type}});
}

PlistValue::Dictionary plainFields(const CatalogueRecord &record)
{
    return {{QStringLiteral("LastModified"), record.modified},
            {QStringLiteral("Flags"), 0},
            {QStringLiteral("GroupID"), record.groupId},
            {QStringLiteral("LastStatusChange"), record.statusChanged},
            {QStringLiteral("Birth"), record.born},
            {QStringLiteral("Size"), record.size},
            {QStringLiteral("InodeNumber"), record.inode},
            {QStringLiteral("Mode"), record.mode},
            {QStringLiteral("UserID"), record.userId},
            {QStringLiteral("ProtectionClass"), record.protectionClass}};
}

void addReferences(KeyedArchive &archive, const CatalogueRecord &record, bool wrapDigest,
                   PlistValue::Dictionary &fields)
{
    fields.emplace_back(QStringLiteral("RelativePath"), archive.add(record.relativePath));
    if (!record.target.isEmpty())
        fields.emplace_back(QStringLiteral("Target"), archive.add(record.target));
    if (!record.digest.isEmpty())
        fields.emplace_back(QStringLiteral("Digest"),
                            wrapDigest ? addData(archive, record.digest) : archive.add(record.digest));
    if (!record.encryptionKey.isEmpty())
        fields.emplace_back(QStringLiteral("EncryptionKey"), addData(archive, record.encryptionKey));
    if (!record.extendedAttributes.isEmpty())
        fields.emplace_back(QStringLiteral("ExtendedAttributes"), archive.add(record.extendedAttributes));
    fields.emplace_back(QStringLiteral("$class"),
                        archive.addClass({QStringLiteral("MBFile"), QStringLiteral("NSObject")}));
}

} // namespace

QByteArray archivedFileRecord(const CatalogueRecord &record, RecordLayout layout)
{
    KeyedArchive archive;
    PlistValue::Dictionary fields = plainFields(record);
    if (layout == RecordLayout::RootLast) {
        addReferences(archive, record, true, fields);
        return archive.finish(archive.add(std::move(fields)));
    }
    const PlistUid root = archive.add(false);
    addReferences(archive, record, false, fields);
    archive.set(root, std::move(fields));
    return archive.finish(root);
}

} // namespace sample
