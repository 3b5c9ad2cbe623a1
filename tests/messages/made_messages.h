#pragma once

#include "backup/file_source.h"
#include "base/error.h"
#include "messages/abs_message_db.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

#include <deque>
#include <limits>

/// Message records made by a test; owns them.
class MadeMessages
{
public:
    _MsgHandle *handle(const QString &id, const QString &service = QStringLiteral("iMessage"))
    {
        _MsgHandle &handle = m_handles.emplace_back();
        handle.rowid = static_cast<qint64>(m_handles.size());
        handle.id = id;
        handle.service = service;
        return &handle;
    }

    _MsgChat *chat(const QString &guid, std::vector<const _MsgHandle *> handles)
    {
        _MsgChat &chat = m_chats.emplace_back();
        chat.rowid = static_cast<qint64>(m_chats.size());
        chat.guid = guid;
        chat.chat_identifier = guid.section(u';', -1);
        chat.service_name = guid.section(u';', 0, 0);
        chat.style = handles.size() > 1 ? 43 : 45;
        chat.handles = std::move(handles);
        return &chat;
    }

    _MsgMessage *message(_MsgChat *chat, const QString &text, int date)
    {
        _MsgMessage &message = m_messages.emplace_back();
        message.rowid = message.sourceRowid = static_cast<qint64>(m_messages.size());
        message.guid = QStringLiteral("GUID-%1").arg(message.rowid);
        message.text = text;
        message.date = date;
        message.service = QStringLiteral("iMessage");
        message.chat = chat;
        if (chat) {
            message.handle = chat->handles.empty() ? nullptr : chat->handles.front();
            message.handle_id = message.handle ? message.handle->rowid : 0;
        }
        refs.push_back({chat, &message});
        return &message;
    }

    _MsgAttachment *attachment(_MsgMessage *message, const QString &guid, const QString &name)
    {
        _MsgAttachment &attachment = m_attachments.emplace_back();
        attachment.rowid = static_cast<qint64>(m_attachments.size());
        attachment.guid = guid;
        attachment.transfer_name = name;
        attachment.filename = QStringLiteral("~/Library/SMS/Attachments/00/00/%1/%2").arg(guid, name);
        attachment.source = {QStringLiteral("MediaDomain"), guid + u'/' + name};
        message->attachments.push_back(&attachment);
        message->cache_has_attachments = 1;
        return &attachment;
    }

    std::vector<MessageRef> refs;

private:
    std::deque<_MsgHandle> m_handles;
    std::deque<_MsgChat> m_chats;
    std::deque<_MsgMessage> m_messages;
    std::deque<_MsgAttachment> m_attachments;
};

/// Attachment files by their relative path.
class MadeFiles : public FileSource
{
public:
    QMap<QString, QByteArray> contents;
    QStringList unreadable;
    QStringList unwritable;
    QStringList locked;
    QStringList lost; // listed, without content
    QMap<QString, std::uint64_t> lengths; // that are listed; of the content where there is none
    qint64 age = 0;

    bool hasContent(const SourceFile &file) const override
    {
        return lists(file) && !lost.contains(file.relativePath);
    }
    bool lists(const SourceFile &file) const override { return contents.contains(file.relativePath); }
    qint64 takenAt() const override { return age; }
    std::optional<QString> fetchDatabase(const SourceFile &) override { return std::nullopt; }
    void fetchTo(const SourceFile &file, const QString &destination, const CopyProgress & = {}) override
    {
        if (unreadable.contains(file.relativePath))
            throw Error(QStringLiteral("can not read %1.").arg(file.relativePath));
        if (unwritable.contains(file.relativePath))
            throw Error(QStringLiteral("can not write %1.").arg(destination), ErrorKind::Other,
                        FileAccess::Writing);
        QDir().mkpath(QFileInfo(destination).path());
        QFile out(destination);
        if (!out.open(QIODevice::WriteOnly) || out.write(contents.value(file.relativePath)) < 0)
            throw Error(QStringLiteral("can not write %1.").arg(destination));
    }
    bool isLocked(const SourceFile &file) const override { return locked.contains(file.relativePath); }
    SourceFile fileOfDevicePath(const QString &) const override { return {}; }
    std::uint64_t listedBytes(const SourceFile &file) const override
    {
        const auto content = static_cast<std::uint64_t>(contents.value(file.relativePath).size());
        return lengths.value(file.relativePath, content);
    }
    QString fetchForViewing(const SourceFile &file) override
    {
        fetchTo(file, m_view.filePath(QStringLiteral("view")));
        return m_view.filePath(QStringLiteral("view"));
    }

private:
    QTemporaryDir m_view;
};

/// Stops the job before its item of a number.
class StopAt : public Progress
{
public:
    explicit StopAt(int item) : m_left(item) {}
    void report(const QString &, int, const QString &) override {}
    bool isCancelled() const override { return m_left-- == 0; }

private:
    mutable int m_left;
};

/// Everything that a message says of itself and of what belongs to it, but for row ids.
inline QString described(const MessageRef &ref)
{
    using M = _MsgMessage;
    const M &m = *ref.message;
    QStringList parts;
    const auto handleText = [](const _MsgHandle *h) {
        return h ? QStringList{h->id,       h->service,
                               h->country,  h->uncanonicalized_id,
                               h->_ct_name, QString::fromLatin1(h->_photo.toHex())}
                       .join(u'/')
                 : QStringLiteral("nobody");
    };
    for (const auto field : {&M::guid, &M::text, &M::service_center, &M::subject, &M::country, &M::service,
                             &M::account, &M::account_guid, &M::cache_roomnames, &M::group_title})
        parts.append(m.*field);
    for (const auto field : {&M::replace,
                             &M::version,
                             &M::type,
                             &M::error,
                             &M::date,
                             &M::date_read,
                             &M::date_delivered,
                             &M::is_delivered,
                             &M::is_finished,
                             &M::is_emote,
                             &M::is_from_me,
                             &M::is_empty,
                             &M::is_delayed,
                             &M::is_auto_reply,
                             &M::is_prepared,
                             &M::is_read,
                             &M::is_system_message,
                             &M::is_sent,
                             &M::has_dd_results,
                             &M::is_service_message,
                             &M::is_forward,
                             &M::was_downgraded,
                             &M::is_archive,
                             &M::cache_has_attachments,
                             &M::was_data_detected,
                             &M::was_deduplicated,
                             &M::is_audio_message,
                             &M::is_played,
                             &M::date_played,
                             &M::item_type,
                             &M::group_action_type,
                             &M::share_status,
                             &M::share_direction,
                             &M::is_expirable,
                             &M::expire_state,
                             &M::message_action_type})
        parts.append(QString::number(m.*field));
    parts << QString::fromLatin1(m.attributedBody.toHex()) << handleText(m.handle)
          << handleText(m.otherHandle);
    for (const _MsgAttachment *a : m.attachments)
        parts << QStringList{a->guid,      a->filename,      a->uti,
                             a->mime_type, a->transfer_name, QString::fromLatin1(a->user_info.toHex())}
                     .join(u'/')
              << QStringLiteral("%1 %2 %3 %4 %5")
                     .arg(a->created_date)
                     .arg(a->start_date)
                     .arg(a->transfer_state)
                     .arg(a->is_outgoing)
                     .arg(a->total_bytes);
    if (const _MsgChat *c = ref.chat) {
        parts << QStringList{c->guid,
                             c->account_id,
                             c->chat_identifier,
                             c->service_name,
                             c->room_name,
                             c->account_login,
                             c->last_addressed_handle,
                             c->display_name,
                             c->group_id,
                             QString::fromLatin1(c->properties.toHex())}
                     .join(u'/')
              << QStringLiteral("%1 %2 %3").arg(c->style).arg(c->state).arg(c->is_archived);
        QStringList handles;
        for (const _MsgHandle *handle : c->handles)
            handles << handleText(handle);
        handles.sort();
        parts << handles;
    }
    return parts.join(u'|');
}

/// Sorted descriptions of all messages; loads them first.
inline QStringList describedMessages(AbsMessageDb &db)
{
    NoProgress progress;
    db.loadChats();
    db.loadMessages(0, progress);
    QStringList all;
    for (const MessageRef &ref :
         db.select({}, std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()))
        all << described(ref);
    all.sort();
    return all;
}
