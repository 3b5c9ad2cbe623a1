#include "export/export_messages_db.h"

#include "base/error.h"
#include "base/source_guard.h"

#include <QFileInfo>

ExportMessagesDb::ExportMessagesDb(QString folder, FileSource *source,
                                   const std::vector<MessageRef> &messages)
    : m_folder(std::move(folder)), m_source(source), m_messages(messages)
{
}

void ExportMessagesDb::begin()
{
    SourceGuard::requireOutside(path());
    if (QFileInfo(path()).isSymLink())
        throw Error(QStringLiteral("can not write %1. It is a link, and leads elsewhere.").arg(path()),
                    ErrorKind::Denied, FileAccess::Writing);
    m_saving.emplace(m_folder, m_source, m_messages, ChangedMessages::Keep);
}

void ExportMessagesDb::write(const MessageRef &ref)
{
    m_saving->add(ref);
}

void ExportMessagesDb::end()
{
    m_saved = m_saving->finish();
    m_saving.reset();
}
