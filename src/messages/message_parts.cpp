#include "messages/message_parts.h"

#include "base/apple_time.h"
#include "base/contained_path.h"
#include "base/error.h"
#include "messages/derived_identity.h"
#include "messages/record_date.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QSaveFile>

namespace {
// Without its parameters, such as "; charset=utf-8".
QString bareType(const QString &contentType)
{
    return contentType.section(u';', 0, 0).trimmed().toLower();
}

int remainder(qint64 number, int divisor)
{
    const auto rest = static_cast<int>(number % divisor);
    return rest < 0 ? rest + divisor : rest;
}

QString suffixOf(const MessagePart &part)
{
    const QString suffix = QFileInfo(part.contentLocation).suffix();
    return suffix.isEmpty() ? QMimeDatabase().mimeTypeForName(bareType(part.contentType)).preferredSuffix()
                            : suffix;
}

void writeWhole(const QString &path, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        throw Error::ofFile(QStringLiteral("can not write %1. %2"), file, FileAccess::Writing);
}
} // namespace

bool MessagePart::isText() const
{
    return bareType(contentType) == u"text/plain";
}

bool MessagePart::isHidden() const
{
    const QString type = bareType(contentType);
    return type.isEmpty() || type.startsWith(u"application/");
}

QString MessagePart::devicePath() const
{
    return QStringLiteral("var/mobile/Library/SMS/Parts/%1/%2/%3-%4.%5")
        .arg(remainder(groupId, 256), 2, 16, QChar(u'0'))
        .arg(remainder(messageId, 16), 2, 10, QChar(u'0'))
        .arg(messageId)
        .arg(partId)
        .arg(suffixOf(*this));
}

MessageParts::MessageParts() : m_scratch(QStringLiteral("loose")) {}

void MessageParts::clear()
{
    m_names.clear();
    m_scratch.remove();
}

QString MessageParts::freeName(const MessagePart &part)
{
    const QString name = part.contentLocation.section(u'/', -1);
    const QString wanted = name.isEmpty() ? part.devicePath().section(u'/', -1) : name;
    const QString suffix = QFileInfo(wanted).suffix();
    const QString ending = suffix.isEmpty() ? QString() : u'.' + suffix;
    QHash<QString, int> &names = m_names[part.messageId];
    QString free = wanted;
    while (names.contains(free.toLower()))
        free = QStringLiteral("%1(%2)").arg(wanted.chopped(ending.size())).arg(++names[wanted.toLower()]) +
               ending;
    names.insert(free.toLower(), 0);
    return free;
}

void MessageParts::fill(_MsgAttachment &attachment, const MessagePart &part)
{
    const QString devicePath = part.devicePath();
    attachment.rowid = part.rowid;
    attachment.guid = guidFrom(devicePath);
    attachment.created_date =
        recordDate(appleFromUnix(QDateTime::currentSecsSinceEpoch()), DateUnit::Seconds);
    attachment.transfer_name = freeName(part);
    attachment.filename = QStringLiteral("~/Library/SMS/Attachments/%1/%2/%3/%4")
                              .arg(attachment.guid.mid(0, 2).toLower(), attachment.guid.mid(2, 2).toLower(),
                                   attachment.guid, attachment.transfer_name);
    attachment.mime_type = part.contentType;
    attachment.is_outgoing = part.isOutgoing;
    attachment.total_bytes = part.data.size();
    if (part.data.isEmpty())
        return;
    const QString folder = m_scratch.withRoomFor(static_cast<std::uint64_t>(part.data.size()));
    if (const std::optional<QString> path = containedPath(folder, devicePath)) {
        writeWhole(*path, part.data);
        attachment.local_path = *path;
    }
}
