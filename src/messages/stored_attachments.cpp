#include "messages/stored_attachments.h"

#include "base/contained_path.h"

#include <QCryptographicHash>

#include <algorithm>

namespace {
constexpr qsizetype shortestGuid = 8;
constexpr qsizetype longestGuid = 100;
constexpr qsizetype longestName = 200;  // bytes; file systems allow 255
constexpr qsizetype longestSuffix = 16; // characters

bool isGuidCharacter(QChar c)
{
    return c.unicode() < 128 && (c.isLetterOrNumber() || c == u'-' || c == u'_');
}

// A GUID that no device makes is not trusted as a name.
QString folderName(const QString &guid)
{
    if (guid.size() >= shortestGuid && guid.size() <= longestGuid &&
        std::all_of(guid.begin(), guid.end(), isGuidCharacter))
        return guid;
    return QString::fromLatin1(QCryptographicHash::hash(guid.toUtf8(), QCryptographicHash::Md5).toHex());
}

QString shortened(const QString &name)
{
    if (name.toUtf8().size() <= longestName)
        return name;
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString suffix = dot > 0 && name.size() - dot <= longestSuffix ? name.mid(dot) : QString();
    QString base = name.chopped(suffix.size());
    while (base.toUtf8().size() + suffix.toUtf8().size() > longestName)
        base.chop(base.back().isLowSurrogate() ? 2 : 1);
    return base + suffix;
}

QString fileName(const _MsgAttachment &attachment)
{
    QString name = attachment.displayName();
    name.removeIf([](QChar c) { return c == u'/' || c.unicode() < 0x20; });
    name = shortened(name.trimmed());
    if (containedPath(QString(), name))
        return name;
    const QString escaped = u'_' + name;
    return !name.isEmpty() && containedPath(QString(), escaped) ? escaped : QStringLiteral("attachment");
}
} // namespace

SourceFile StoredAttachments::placeOf(const _MsgAttachment &attachment)
{
    const QString guid = folderName(attachment.guid);
    return {QString(),
            QStringLiteral("Attachments/%1/%2/%3/%4")
                .arg(guid.mid(0, 2).toLower(), guid.mid(2, 2).toLower(), guid, fileName(attachment))};
}
