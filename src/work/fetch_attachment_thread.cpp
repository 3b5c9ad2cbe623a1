#include "work/fetch_attachment_thread.h"

#include "messages/attachment_content.h"

FetchAttachmentThread::FetchAttachmentThread(const _MsgAttachment &attachment, LoadedMessagesPtr owner)
    : m_attachment(attachment), m_owner(std::move(owner))
{
}

QString FetchAttachmentThread::work(Progress &progress)
{
    m_owner->files.use(progress, [&](FileSource *source) { m_path = viewableFile(m_attachment, source); });
    return {};
}
