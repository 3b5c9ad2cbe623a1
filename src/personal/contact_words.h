#pragma once

#include "personal/contact_record.h"

#include <QString>

/// The word for a row's type number, such as "Mobile" for a phone of type 2. "Other" for 0 and for unknown
/// numbers; empty for kinds without types. For instant messages the number is the protocol's.
QString contactTypeWord(ContactDataKind kind, int type);

/// What a row shows as its label: the custom label when there is one, else the type word.
QString contactRowLabel(ContactDataKind kind, const ContactDataRow &row);

/// The type number that a label of the device's address book stands for; `custom` receives the label as it
/// stands when it is none of the known ones, and the number is 0.
int contactTypeOfLabel(ContactDataKind kind, const QString &label, QString &custom);

/// Prefix, first, middle, last name and suffix of a Name row, joined by single blanks.
QString composeDisplayName(const ContactDataRow &name);

/// The one-text form of an address row: street, then city, state and ZIP, then country, on lines of their
/// own. A ZIP with neither city nor state is left out.
QString composeAddress(const ContactDataRow &address);

/// The display name of a contact; empty when it has none.
QString displayNameOf(const ContactRecord &contact);
