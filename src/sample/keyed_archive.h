#pragma once

#include "sample/plist_value.h"

#include <QStringList>

namespace sample {

struct CatalogueRecord;

/// Collects the objects of a keyed archive: "$objects" with "$null" at 0, references as UID values.
class KeyedArchive
{
public:
    KeyedArchive();

    /// The reference of a new object.
    PlistUid add(PlistValue object);
    /// Replaces an object whose place had to be taken before its fields were known.
    void set(PlistUid reference, PlistValue object);
    /// The class description of a class and those it derives from, nearest first.
    PlistUid addClass(const QStringList &names);
    /// The whole archive as a binary property list.
    QByteArray finish(PlistUid root) const;

private:
    PlistValue::Array m_objects;
};

/// How the objects of a file record are laid out: systems differ, and readers have to follow the references.
enum class RecordLayout { RootFirst, RootLast };

/// The archived record of one file, as the `file` column of Manifest.db holds it.
QByteArray archivedFileRecord(const CatalogueRecord &record, RecordLayout layout);

} // namespace sample
