#pragma once

#include <QString>

namespace sample {

/// Gives a write-ahead log chosen salts instead of the ones SQLite drew, and makes its checksums fit again,
/// so that equal statements leave equal bytes. Throws Error.
void saltWal(const QString &path, quint64 salt);

} // namespace sample
