#include "messages/abs_message_db.h"

#include "base/texts.h"

#include <unordered_set>

AbsMessageDb::AbsMessageDb()
{
    m_noChat.rowid = _MsgChat::none;
    m_noChat.display_name = textFor("IDS_NO_CONVERSATION");
}

AbsMessageDb::~AbsMessageDb() = default;

std::vector<const _MsgChat *> AbsMessageDb::conversations() const
{
    std::vector<const _MsgChat *> all(m_chatList.begin(), m_chatList.end());
    if (!m_noChat.messages.empty())
        all.push_back(&m_noChat);
    return all;
}

_MsgChat *AbsMessageDb::chat(qint64 rowid) const
{
    const auto found = m_chatById.find(rowid);
    return found == m_chatById.end() ? nullptr : found->second;
}

const _MsgHandle *AbsMessageDb::handle(qint64 rowid) const
{
    const auto found = m_handleById.find(rowid);
    return found == m_handleById.end() ? nullptr : found->second;
}

std::vector<MessageRef> AbsMessageDb::select(const std::vector<qint64> &chatIds, qint64 from, qint64 to) const
{
    const auto inRange = [&](const _MsgMessage &message) {
        return message.date >= from && message.date <= to;
    };
    const std::unordered_set<qint64> wanted(chatIds.begin(), chatIds.end());
    std::vector<MessageRef> selected;
    std::vector<MessageRef> conversation;
    const auto flush = [&] {
        sortForExport(conversation);
        selected.insert(selected.end(), conversation.begin(), conversation.end());
        conversation.clear();
    };
    if (wanted.empty() || wanted.contains(_MsgChat::none)) {
        for (const _MsgMessage *message : m_noChat.messages)
            if (inRange(*message))
                conversation.push_back({nullptr, message});
        flush();
    }
    for (const _MsgChat *chat : m_chatList) {
        if (!wanted.empty() && !wanted.contains(chat->rowid))
            continue;
        for (const _MsgMessage *message : chat->messages)
            if (inRange(*message))
                conversation.push_back({chat, message});
        flush();
    }
    return selected;
}
