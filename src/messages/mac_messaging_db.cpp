#include "messages/mac_messaging_db.h"

#include <QDir>

namespace {
const QString messagesFolder = QStringLiteral("/Library/Messages/");
const QString homeDomain = QStringLiteral("home");

// The path below the folder of the application, whoever's home it was in; empty for any other path.
QString pathInMessagesFolder(const QString &path)
{
    const qsizetype begin = path.indexOf(messagesFolder);
    const bool isInHome = path.startsWith(u"~/") || path.startsWith(u'/');
    return begin > 0 && isInHome ? path.mid(begin + messagesFolder.size()) : QString();
}
} // namespace

MacMessageFiles::MacMessageFiles(const QString &folder, const QString &home)
    : LooseDatabaseSource(folder, QString()), m_homeFolder(QDir(home).filePath(messagesFolder.mid(1)))
{
}

QString MacMessageFiles::localPath(const SourceFile &file) const
{
    return pathBelow(file.domain == homeDomain ? m_homeFolder : folder(), file);
}

SourceFile MacMessageFiles::fileOfDevicePath(const QString &path) const
{
    const QString relativePath = pathInMessagesFolder(path);
    if (relativePath.isEmpty())
        return {};
    for (const QString &domain : {QString(), homeDomain})
        if (const SourceFile file{domain, relativePath}; hasContent(file))
            return file;
    return {};
}

MacMessagingDb::MacMessagingDb(const DatabaseFile &file, MacMessageFiles &files)
    : IOS6MessageDb(file, &files, ContactNames::None), m_files(files)
{
}

void MacMessagingDb::placeAttachment(_MsgAttachment &attachment) const
{
    if (attachment.filename.isEmpty())
        return;
    attachment.source = m_files.fileOfDevicePath(attachment.filename);
    attachment.local_path = m_files.localPath(attachment.source);
    attachment.filename = QStringLiteral("~/Library/SMS/Attachments/%1/%2/%3/%4")
                              .arg(attachment.guid.mid(0, 2).toLower(), attachment.guid.mid(2, 2).toLower(),
                                   attachment.guid, attachment.filename.section(u'/', -1));
}
