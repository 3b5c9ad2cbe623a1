#pragma once

#include "personal/personal_source.h"

/// The contacts of a file of vCards; it has no other records. Reads the whole file at once. Throws Error when
/// it cannot be read, or holds no card at all.
std::unique_ptr<PersonalSource> openCardFile(const QString &path);
