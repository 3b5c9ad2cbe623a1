#pragma once

#include "backup/file_source.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <limits>
#include <vector>

/// One address that takes part in conversations.
struct _MsgHandle
{
    qint64 rowid = 0;
    QString id; // phone number or e-mail address, normalised
    QString country;
    QString service;
    QString uncanonicalized_id;
    QString _ct_name; // contact name found for the address, empty when none
    QByteArray _photo;

    /// The contact's name, or the address when there is none.
    QString name() const { return _ct_name.isEmpty() ? id : _ct_name; }
    /// "Name (address)", or the address alone.
    QString nameWithAddress() const;
};

/// One file that came with a message.
struct _MsgAttachment
{
    qint64 rowid = 0;
    QString guid;
    int created_date = 0;
    int start_date = 0;
    QString filename; // the path as the device stored it
    QString uti;
    QString mime_type;
    int transfer_state = 5;
    int is_outgoing = 0;
    QByteArray user_info;
    QString transfer_name; // the file's display name
    qint64 total_bytes = 0;
    QString local_path; // where the file can be read on this computer, once somebody has fetched it
    SourceFile source;  // where the source of the messages keeps the file; null when it does not list it

    /// Last component of the device's path, else the transfer name, else the GUID.
    QString displayName() const;
};

struct _MsgChat;

/// One message. Dates are Apple absolute seconds. Not owned by its chats: the database object that loaded it
/// owns it.
struct _MsgMessage
{
    qint64 rowid = 0;
    qint64 handle_id = 0;
    qint64 sourceRowid = 0; // under which the reader found the message; 0 in a new record
    QString guid;
    QString text;
    QString service_center;
    QString subject;
    QString country;
    QByteArray attributedBody;
    QString service;
    QString account;
    QString account_guid;
    QString cache_roomnames;
    QString group_title;
    int replace = 0;
    int version = 10;
    int type = 0;
    int error = 0;
    int date = 0;
    int date_read = 0;
    int date_delivered = 0;
    int is_delivered = 0;
    int is_finished = 0;
    int is_emote = 0;
    int is_from_me = 0;
    int is_empty = 0;
    int is_delayed = 0;
    int is_auto_reply = 0;
    int is_prepared = 0;
    int is_read = 0;
    int is_system_message = 0;
    int is_sent = 0;
    int has_dd_results = 0;
    int is_service_message = 0;
    int is_forward = 0;
    int was_downgraded = 0;
    int is_archive = 0;
    int cache_has_attachments = 0;
    int was_data_detected = 0;
    int was_deduplicated = 0;
    int is_audio_message = 0;
    int is_played = 0;
    int date_played = 0;
    int item_type = 0; // not 0: a system item
    int other_handle_id = -1;
    int group_action_type = 0;
    int share_status = 0;
    int share_direction = 0;
    int is_expirable = 0;
    int expire_state = 0;
    int message_action_type = 0;
    bool dateOrderOnly = false;
    const _MsgHandle *handle = nullptr;
    const _MsgHandle *otherHandle = nullptr;
    const _MsgChat *chat = nullptr;            // the first conversation that holds it; null when none
    std::vector<_MsgAttachment *> attachments; // ascending row id
};

/// One conversation.
struct _MsgChat
{
    qint64 rowid = 0;
    QString guid;
    int style = 0; // 45 one to one, 43 group
    int state = 0;
    QString account_id;
    QByteArray properties;
    QString chat_identifier;
    QString service_name;
    QString room_name;
    QString account_login;
    int is_archived = 0;
    QString last_addressed_handle;
    QString display_name;
    QString group_id;
    int _last = 0;                           // Apple absolute seconds of the newest message
    std::vector<const _MsgHandle *> handles; // in the order of their row ids as decimal texts: 1, 10, 2
    std::vector<_MsgMessage *> messages;     // ascending row id

    bool isGroup() const { return handles.size() > 1; }
    /// True for what stands for the messages of no conversation, which is none of the source's.
    bool isNone() const { return rowid == none; }

    static constexpr qint64 none = std::numeric_limits<qint64>::min();
};

/// A message as part of one conversation; a message in several conversations is listed in each. `chat` is
/// null for a message that belongs to none.
struct MessageRef
{
    const _MsgChat *chat = nullptr;
    const _MsgMessage *message = nullptr;
};

enum class Addresses { Without, With };

/// The display name, else the names of the handles joined with ", ", else "Unknown".
QString chatName(const _MsgChat &chat, Addresses addresses);

/// The chat's name, with " (sender)" appended in a group; "unknown" without a chat.
QString conversationTitle(const MessageRef &ref);

/// Sorts into the order of the exports: by date, but messages at most 20 row ids and 120 seconds apart by row
/// id. That order is not transitive, so the result is that of a stable merge of the messages as they stand in
/// `refs` sorted by row id first; it is the same in every run.
void sortForExport(std::vector<MessageRef> &refs);
