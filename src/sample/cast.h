#pragma once

#include <QString>

#include <span>

namespace sample {

/// A person whom the showcase conversations, the calls and the address book have in common. Texts are UTF-8.
struct CastMember
{
    const char *first;
    const char *last;
    const char *phone; // international, as handles hold it
    const char *country;
    const char *written; // the same number as somebody typed it into the address book
    const char *label;   // of the number
    const char *email;

    QString name() const;
};

/// In the order of their address-book rows, which begin with 1.
std::span<const CastMember> cast();

/// The member who has the number or null.
const CastMember *castMemberByPhone(const QString &phone);

/// A number that nobody in the cast has, one for each index; reserved for fiction.
QString strangerPhone(int index);

} // namespace sample
