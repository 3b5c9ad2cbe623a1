#include "sample/sample_maker.h"

#include "sample/backup_container.h"
#include "sample/message_content.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

using namespace sample;

namespace {

const QString messagesFolder = QStringLiteral("Library/Messages/");

// What phones alone keep: traces of an older way to synchronise.
constexpr const char *withoutPhoneColumns =
    "alter table message drop column sr_ck_sync_state;"
    "alter table message drop column sr_ck_record_id;"
    "alter table message drop column sr_ck_record_change_tag;"
    "alter table chat drop column sr_server_change_token;"
    "alter table chat drop column sr_ck_sync_state;"
    "alter table chat drop column sr_cloudkit_record_id;"
    "alter table attachment drop column sr_ck_sync_state;"
    "alter table attachment drop column sr_ck_server_change_token_blob;"
    "alter table attachment drop column sr_ck_record_id";

/// Writes the attachments beside the database.
class AttachmentWriter
{
public:
    AttachmentWriter(const QDir &folder, SampleSummary &summary) : m_folder(folder), m_summary(summary) {}

    void operator()(const AttachmentFile &file)
    {
        SampleFile written;
        written.relativePath = file.relativePath.mid(messagesFolder.size());
        written.modified = file.modified;
        written.sha1 = QCryptographicHash::hash(file.content, QCryptographicHash::Sha1);
        written.sizeBytes = written.cataloguedSize = file.content.size();
        const QString path = m_folder.filePath(written.relativePath);
        m_folder.mkpath(QFileInfo(path).path());
        writeFile(path, file.content);
        setModified(path, file.modified);
        m_summary.files.push_back(written);
    }

private:
    QDir m_folder;
    SampleSummary &m_summary;
};

} // namespace

SampleSummary makeMacMessages(const SampleOptions &options)
{
    const QDir folder(options.folder);
    prepareFolder(options.folder);
    SampleSummary summary;
    MessageDatabase database(folder.filePath(QStringLiteral("chat.db")), generationFor(17), options.seed);
    database.execute(withoutPhoneColumns);
    MessageContent content(database, SeededGenerator(options.seed).fork("messages"),
                           AttachmentWriter(folder, summary), Keeper::Mac);
    content.addShowcase();
    content.addBulk(options.messages, options.chats);
    summary.chats = content.chats();
    summary.counts = content.counts();
    database.finish();
    return summary;
}
