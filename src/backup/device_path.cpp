#include "backup/device_path.h"

#include <QString>

QString pathInDomain(const QString &devicePath)
{
    for (const char *home : {"~/", "/var/mobile/", "var/mobile/", "/private/var/mobile/"}) {
        const QLatin1String prefix(home);
        if (devicePath.startsWith(prefix))
            return devicePath.mid(prefix.size());
    }
    return {};
}
