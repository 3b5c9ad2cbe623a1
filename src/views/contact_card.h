#pragma once

#include "personal/contact_record.h"

#include <QPixmap>
#include <QString>

/// A contact as HTML: picture, name, and every row with its label. Nothing in it comes from outside.
QString contactCard(const ContactRecord &contact);

/// Its name, or what stands for one: the organisation, a number, an address.
QString contactTitle(const ContactRecord &contact);

/// A square picture of it for lists, a sign where it has none.
QPixmap contactPicture(const ContactRecord &contact);
