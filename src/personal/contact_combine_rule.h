#pragma once

#include "personal/contact_record.h"

#include <QList>

/// Says how a contact that arrives is combined with one that is there. Columns are numbers, 15 being the
/// picture.
class AbsContactCombineRule
{
public:
    using Columns = QList<int>;
    struct Merge
    {
        Columns columns;
        bool single = false; // the kind holds one value a contact
    };

    virtual ~AbsContactCombineRule() = default;
    virtual Columns identityColumns(ContactDataKind kind) const = 0;
    virtual Columns matchColumns(ContactDataKind kind, const ContactDataRow &row) const = 0;
    virtual Columns combinedColumns(ContactDataKind kind) const = 0;
    virtual Merge mergeColumns(ContactDataKind kind) const = 0;
};

/// The rule for contacts out of backups.
class IOSContactCombineRule : public AbsContactCombineRule
{
public:
    Columns identityColumns(ContactDataKind kind) const override;
    Columns matchColumns(ContactDataKind kind, const ContactDataRow &row) const override;
    Columns combinedColumns(ContactDataKind kind) const override;
    Merge mergeColumns(ContactDataKind kind) const override;
};

/// True when both rows hold the same values in every one of the columns.
bool equalIn(const AbsContactCombineRule::Columns &columns, const ContactDataRow &a, const ContactDataRow &b);
