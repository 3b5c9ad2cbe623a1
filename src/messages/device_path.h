#pragma once

#include <QString>

/// The path on the device, without a leading "/", that an attachment's stored file name means: "~/" is the
/// folder "var/mobile/", and characters that no desktop file system allows are left out.
QString devicePathOf(const QString &filename);
