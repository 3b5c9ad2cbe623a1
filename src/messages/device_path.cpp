#include "messages/device_path.h"

#include <QStringView>

QString devicePathOf(const QString &filename)
{
    static constexpr QStringView forbidden = u"\\:*?\"<>|\n\r\t";
    QStringView rest = filename;
    if (rest.startsWith(u'/'))
        rest = rest.mid(1);
    QString path;
    path.reserve(filename.size() + 10);
    if (rest.startsWith(u"~/")) {
        path += u"var/mobile/";
        rest = rest.mid(2);
    }
    for (const QChar c : rest)
        if (!forbidden.contains(c))
            path += c;
    return path;
}
