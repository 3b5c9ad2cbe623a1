#include "personal/contact_combine_rule.h"

#include <algorithm>

namespace {
struct Lists
{
    AbsContactCombineRule::Columns identity;
    AbsContactCombineRule::Columns match;
    AbsContactCombineRule::Columns combined;
    AbsContactCombineRule::Merge merge;
};

const Lists &listsOf(ContactDataKind kind)
{
    static const Lists none;
    static const QMap<ContactDataKind, Lists> lists{
        {ContactDataKind::Photo, {{4}, {4}, {4}, {{15, 4}, true}}},
        {ContactDataKind::Phone, {{1}, {1}, {3, 2, 1}, {{3, 2, 1}, false}}},
        {ContactDataKind::Email, {{1}, {1}, {3, 2, 1}, {{3, 2, 1}, false}}},
        {ContactDataKind::Nickname, {{1}, {1}, {1}, {{1}, true}}},
        {ContactDataKind::Event, {{1}, {2, 1}, {3, 2, 1}, {{3, 2, 1}, false}}},
        {ContactDataKind::Im, {{1}, {5, 1}, {3, 2, 5, 1}, {{3, 2, 5, 1}, false}}},
        {ContactDataKind::Note, {{1}, {1}, {1}, {{1}, true}}},
        {ContactDataKind::Organization, {{4, 5, 1}, {4, 5, 1}, {4, 5, 1}, {{4, 5, 1}, true}}},
        {ContactDataKind::Relation, {{1}, {2, 1}, {3, 2, 1}, {{3, 2, 1}, false}}},
        {ContactDataKind::PostalAddress,
         {{1}, {1}, {3, 2, 9, 4, 7, 8, 11, 10}, {{3, 2, 9, 4, 7, 8, 11, 10, 1}, false}}},
        {ContactDataKind::Website, {{1}, {1}, {3, 2, 1}, {{3, 2, 1}, false}}},
    };
    const auto found = lists.constFind(kind);
    return found == lists.constEnd() ? none : *found;
}
} // namespace

AbsContactCombineRule::Columns IOSContactCombineRule::identityColumns(ContactDataKind kind) const
{
    return listsOf(kind).identity;
}

AbsContactCombineRule::Columns IOSContactCombineRule::matchColumns(ContactDataKind kind,
                                                                   const ContactDataRow &) const
{
    return listsOf(kind).match;
}

AbsContactCombineRule::Columns IOSContactCombineRule::combinedColumns(ContactDataKind kind) const
{
    return listsOf(kind).combined;
}

AbsContactCombineRule::Merge IOSContactCombineRule::mergeColumns(ContactDataKind kind) const
{
    return listsOf(kind).merge;
}

bool equalIn(const AbsContactCombineRule::Columns &columns, const ContactDataRow &a, const ContactDataRow &b)
{
    return std::all_of(columns.begin(), columns.end(), [&](int column) {
        return column == 15 ? a.data15 == b.data15 : a.data(column) == b.data(column);
    });
}
