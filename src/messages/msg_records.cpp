#include "messages/msg_records.h"

#include <QStringList>

QString _MsgHandle::nameWithAddress() const
{
    return _ct_name.isEmpty() ? id : _ct_name + QLatin1String(" (") + id + u')';
}

QString _MsgAttachment::displayName() const
{
    const QString fileName = filename.section(u'/', -1);
    if (!fileName.isEmpty())
        return fileName;
    return transfer_name.isEmpty() ? guid : transfer_name;
}

QString chatName(const _MsgChat &chat, Addresses addresses)
{
    if (!chat.display_name.isEmpty())
        return chat.display_name;
    if (chat.handles.empty())
        return QStringLiteral("Unknown");
    QStringList names;
    for (const _MsgHandle *handle : chat.handles)
        names.append(addresses == Addresses::With ? handle->nameWithAddress() : handle->name());
    return names.join(QLatin1String(", "));
}

QString conversationTitle(const MessageRef &ref)
{
    if (!ref.chat)
        return QStringLiteral("unknown");
    const QString name = chatName(*ref.chat, Addresses::Without);
    const _MsgHandle *sender = ref.message->handle;
    return ref.chat->isGroup() && sender ? name + QLatin1String(" (") + sender->name() + u')' : name;
}
