#include "export/export_messages_db.h"

ExportMessagesDb::ExportMessagesDb(QString folder, FileSource *source,
                                   const std::vector<MessageRef> &messages)
    : m_folder(std::move(folder)), m_source(source), m_messages(messages)
{
}

void ExportMessagesDb::begin()
{
    m_saving.emplace(m_folder, m_source, m_messages);
}

void ExportMessagesDb::write(const MessageRef &ref)
{
    m_saving->add(ref);
}

void ExportMessagesDb::end()
{
    m_summary = m_saving->finish();
    m_saving.reset();
}
