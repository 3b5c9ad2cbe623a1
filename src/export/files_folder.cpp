#include "export/files_folder.h"

#include "base/error.h"
#include "base/own_file.h"
#include "export/attachment_file.h"
#include "export/emoji_picture.h"
#include "export/message_text.h"
#include "export/output_file.h"
#include "export/thumbnails.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(path, file.errorString()));
    return file.readAll();
}
} // namespace

FilesFolder::FilesFolder(const QString &outputFolder, FileSource *source, Progress &progress,
                         ExportedMessages &exported)
    : m_folder(makeOwnFolder(outputFolder, QStringLiteral("files"))),
      m_copies(m_folder, source, progress, exported)
{
    copyBubblePieces();
}

void FilesFolder::copyBubblePieces()
{
    const QDir pieces(QStringLiteral(":/bubble"));
    for (const QString &name : pieces.entryList(QDir::Files))
        if (!QFileInfo::exists(m_copies.pathOf(name))) {
            m_copies.names().take(name);
            writeWholeFile(m_copies.pathOf(name), contentOf(pieces.filePath(name)));
        }
    if (!QFileInfo::exists(m_copies.pathOf(QStringLiteral("app_res"))))
        m_copies.names().take(QStringLiteral("app_res"));
}

void FilesFolder::addEmojiPictures(const std::vector<char32_t> &keys)
{
    if (keys.empty())
        return;
    const QString folder = makeOwnFolder(m_folder, QStringLiteral("app_res/emoji"));
    for (const char32_t key : keys) {
        const QString path = folder + QLatin1Char('/') + QString::fromLatin1(emojiName(key) + ".png");
        if (!QFileInfo::exists(path))
            writeWholeFile(path, emojiPng(key));
    }
}

QByteArray FilesFolder::link(const _MsgAttachment &attachment)
{
    const Held &held = hold(attachment);
    return held.name.isEmpty() ? QByteArray("#") : "files/" + addressOf(held.name);
}

QByteArray FilesFolder::picture(const _MsgAttachment &attachment)
{
    Held &held = hold(attachment);
    if (!held.picture)
        held.picture = makePicture(attachment, held);
    return *held.picture;
}

std::optional<QString> FilesFolder::text(const _MsgAttachment &attachment)
{
    const Held &held = hold(attachment);
    if (held.name.isEmpty() || QFileInfo(m_copies.pathOf(held.name)).size() > longestShownTextBytes)
        return std::nullopt;
    return QString::fromUtf8(contentOf(m_copies.pathOf(held.name)));
}

FilesFolder::Held &FilesFolder::hold(const _MsgAttachment &attachment)
{
    const auto known = m_held.find(&attachment);
    if (known != m_held.end())
        return known->second;
    return m_held.emplace(&attachment, Held{m_copies.copy(attachment), {}}).first->second;
}

QByteArray FilesFolder::makePicture(const _MsgAttachment &attachment, const Held &held)
{
    if (held.name.isEmpty())
        return {};
    const bool isCard = attachmentKind(attachment.mime_type) == AttachmentKind::VCard;
    const QString path = m_copies.pathOf(held.name);
    const SmallPicture picture = isCard ? vCardPictureOf(path) : thumbnailOf(path);
    if (picture.isBad)
        m_copies.noteBadPicture(attachment);
    const QByteArray bytes = picture.encoded();
    if (bytes.isEmpty())
        return {};
    const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Md5).toHex();
    const QString name = m_copies.names().take(QString::fromLatin1(hash + (isCard ? ".card" : ".thumb")));
    writeWholeFile(m_copies.pathOf(name), bytes);
    return "files/" + addressOf(name);
}
