#include "messages/logic_hash.h"

#include <QCryptographicHash>
#include <QStringList>
#include <QtEndian>

namespace {
constexpr QChar attachmentMark(0xFFFC);

QByteArray withoutMarks(const QString &text)
{
    return text.contains(attachmentMark) ? QString(text).remove(attachmentMark).toUtf8() : text.toUtf8();
}

QStringList fileNames(const _MsgMessage &message)
{
    QStringList names;
    for (const _MsgAttachment *attachment : message.attachments)
        if (!attachment->filename.isEmpty())
            names.append(attachment->filename.section(u'/', -1).toLower());
    names.sort();
    return names;
}

QByteArray identityOf(const _MsgMessage &message)
{
    QByteArray identity = message.handle ? message.handle->id.toLower().toUtf8() : QByteArray();
    const quint32 date = qToLittleEndian(static_cast<quint32>(message.date));
    identity.append(reinterpret_cast<const char *>(&date), sizeof date);
    identity.append(static_cast<char>(message.is_from_me));
    identity.append(withoutMarks(message.text));
    if (!message.attachments.empty())
        for (const QString &name : fileNames(message))
            identity.append(name.toUtf8());
    return identity;
}
} // namespace

QString logicHash(const _MsgMessage &message)
{
    const QByteArray identity = message.item_type != 0 ? message.guid.toUtf8() : identityOf(message);
    return QString::fromLatin1(QCryptographicHash::hash(identity, QCryptographicHash::Md5).toHex());
}
