#pragma once

#include "base/progress.h"
#include "export/simple_exports.h"
#include "personal/contact_record.h"

enum class ContactFormat { VCard = 1, Csv = 2, Text = 3, Html = 4 };

/// Writes contacts to one file; HTML puts the pictures into a folder "photos" beside it, and names those that
/// are no pictures. A cancelled export keeps what it has written. Throws Error and Cancelled.
Report exportContacts(const QList<ContactRecord> &contacts, ContactFormat format, const QString &path,
                      Progress &progress);
