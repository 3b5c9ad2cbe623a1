#include "work/export_messages_thread.h"

#include "base/texts.h"
#include "work/summary_text.h"

QString messageExportText(const ExportedMessages &exported)
{
    return textFor("IDS_SUC_EXTRACTED_%1_MESSAGES").arg(exported.report.done) + reportText(exported.report);
}

ExportMessagesThread::ExportMessagesThread(std::vector<MessageRef> messages,
                                           std::shared_ptr<const void> owner, MessageFormat format,
                                           QString target, MessageFiles files)
    : m_messages(std::move(messages)),
      m_owner(std::move(owner)),
      m_format(format),
      m_target(std::move(target)),
      m_files(std::move(files))
{
}

QString ExportMessagesThread::work(Progress &progress)
{
    m_files.use(progress, [&](FileSource *source) {
        m_exported = exportMessages(m_messages, m_format, m_target, source, progress);
    });
    noteFailures(m_exported.report);
    return messageExportText(m_exported);
}
