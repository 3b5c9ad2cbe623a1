#include "work/fetch_attachment_thread.h"

#include "base/error.h"
#include "messages/attachment_content.h"

FetchAttachmentThread::FetchAttachmentThread(const _MsgAttachment &attachment, LoadedMessagesPtr owner,
                                             QString destination)
    : m_attachment(attachment), m_owner(std::move(owner)), m_destination(std::move(destination))
{
}

QString FetchAttachmentThread::work(Progress &progress)
{
    m_owner->files.use(progress, [&](FileSource *source) {
        if (m_destination.isEmpty()) {
            m_path = viewableFile(m_attachment, source);
        } else if (hasContent(m_attachment, source)) {
            if (isLocked(m_attachment, source))
                throw Error(
                    QStringLiteral("can not read %1. It is of a class that the password does not unlock.")
                        .arg(m_attachment.displayName()),
                    ErrorKind::Locked);
            fetchContent(m_attachment, source, m_destination,
                         [&progress](std::uint64_t, std::uint64_t) { progress.check(); });
            m_path = m_destination;
        }
    });
    return {};
}
