#include "personal/media_names.h"

#include "base/file_names.h"

namespace {
// Leaves room in a name of 255 bytes for the date and the ending, whatever letters the sender has.
constexpr qsizetype longestSender = 60;

QString dateText(const QDateTime &date)
{
    return date.toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

QString namedByDate(const QDateTime &date, const QString &sender, QByteArrayView devicePath)
{
    QString name = date.isValid() ? date.toLocalTime().toString(QStringLiteral("yyyyMMdd-hhmmss"))
                                  : QStringLiteral("undated");
    QString safe = sender;
    safe.replace(QLatin1Char('.'), QLatin1Char('_'));
    if (const QString who = safeFileName(safe); !who.isEmpty())
        name += QLatin1Char('-') + who.left(longestSender);
    return name + QLatin1Char('.') + QString::fromUtf8(devicePath).section(QLatin1Char('.'), -1);
}
} // namespace

QString exportName(const VoicemailItem &item, const FileCatalogue &catalogue)
{
    return namedByDate(item.date, item.sender, catalogue.relativePath(item.file));
}

QString exportName(const RecordingItem &item, const FileCatalogue &catalogue)
{
    return namedByDate(item.date, {}, catalogue.relativePath(item.file));
}

QString cameraItemName(const FileCatalogue &catalogue, FileCatalogue::Index item)
{
    const QByteArrayView path = catalogue.relativePath(item);
    return QString::fromUtf8(path.sliced(path.lastIndexOf('/') + 1));
}

QString describe(const VoicemailItem &item)
{
    return QStringLiteral("'date:%1, sender:%2'").arg(dateText(item.date), item.sender);
}

QString describe(const RecordingItem &item)
{
    return QStringLiteral("'date:%1'").arg(dateText(item.date));
}
