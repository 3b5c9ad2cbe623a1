#pragma once

class QString;

/// The relative path, inside the domains of the home folder, of a path as a device database writes it:
/// "~/…", "var/mobile/…", "/var/mobile/…", "/private/var/mobile/…". Empty for any other.
QString pathInDomain(const QString &devicePath);
