#pragma once

#include "export/bubble_markup.h"

#include <vector>

/// One page of the view of a conversation.
struct ConversationPage
{
    static constexpr std::size_t messagesPerPage = 50;

    int number = 0; // from 1
    int count = 0;  // of all pages
    std::vector<MessageRef> messages;

    /// How many pages so many messages fill.
    static int countFor(std::size_t messages)
    {
        return static_cast<int>((messages + messagesPerPage - 1) / messagesPerPage);
    }
};

/// The whole page, as UTF-8. Everything that it names is relative to the root of where it is shown:
/// "bubble/style.css", "/app_res/emoji/KEY.png", "/pre_page" and "/next_page", and what `links` gives. The
/// anchors "start", "end" and "sms_ROWID" lead to its parts.
QByteArray conversationPage(const ConversationPage &page, AttachmentLinks &links);
