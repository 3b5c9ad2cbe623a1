#include "work/print_messages_thread.h"

#include "base/texts.h"
#include "export/mms_printer.h"
#include "export/printed_attachments.h"
#include "work/summary_text.h"

PrintMessagesThread::PrintMessagesThread(std::vector<MessageRef> messages, std::shared_ptr<const void> owner,
                                         MessageFiles files, Paper paper)
    : m_messages(std::move(messages)),
      m_owner(std::move(owner)),
      m_files(std::move(files)),
      m_paper(std::move(paper))
{
}

QString PrintMessagesThread::work(Progress &progress)
{
    Report report;
    m_files.use(progress, [&](FileSource *source) {
        FetchedAttachments attachments(source, progress, report);
        MMSPrinter printer(*m_paper.device, attachments);
        CountedProgress counted(progress, textFor("IDS_PRINTING_MESSAGES"), QStringLiteral("Messages: %1/%2"),
                                static_cast<qint64>(m_messages.size()));
        try {
            printer.begin();
            for (const MessageRef &ref : m_messages) {
                counted.item();
                printer.print(ref);
            }
            printer.end();
        } catch (...) {
            // Half a conversation is not worth the paper.
            if (m_paper.abort)
                m_paper.abort();
            throw;
        }
    });
    return endText(textFor("IDS_SUC_PRINTED_%1_MESSAGES").arg(m_messages.size()), report);
}
