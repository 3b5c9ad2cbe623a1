#pragma once

#include "personal/contact_record.h"

#include <QString>

/// A contact as HTML: picture, name, and every row with its label. Nothing in it comes from outside.
QString contactCard(const ContactRecord &contact);
