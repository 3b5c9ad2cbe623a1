#include "export/files_folder.h"

#include "backup/file_source.h"
#include "base/error.h"
#include "export/emoji_picture.h"
#include "export/message_text.h"
#include "export/output_file.h"
#include "export/thumbnails.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

namespace {
constexpr qint64 longestTextBytes = 1024 * 1024;
constexpr qint64 probeBytes = 64 * 1024;

void makeFolder(const QString &path)
{
    if (!QDir().mkpath(path))
        throw Error(QStringLiteral("can not create the folder %1.").arg(path));
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(path, file.errorString()));
    return file.readAll();
}

QString fileNameOf(const _MsgAttachment &attachment)
{
    // The name comes from the device and may hold anything.
    const QString name = attachment.displayName();
    const qsizetype slash = std::max(name.lastIndexOf(QLatin1Char('/')), name.lastIndexOf(QLatin1Char('\\')));
    return portableFileName(name.mid(slash + 1), QStringLiteral("attachment"));
}

void copyWithTime(const QString &from, const QString &to, const CopyProgress &progress)
{
    copyFile(from, to, progress);
    QFile copy(to);
    if (copy.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        copy.setFileTime(QFileInfo(from).lastModified(), QFileDevice::FileModificationTime);
}
} // namespace

FilesFolder::FilesFolder(const QString &outputFolder, FileSource *source, Progress &progress,
                         MessageExportSummary &summary)
    : m_folder(QDir(outputFolder).filePath(QStringLiteral("files"))),
      m_source(source),
      m_progress(progress),
      m_summary(summary),
      m_names((makeFolder(m_folder), m_folder))
{
    copyBubblePieces();
}

QString FilesFolder::pathOf(const QString &name) const
{
    return m_folder + QLatin1Char('/') + name;
}

void FilesFolder::copyBubblePieces()
{
    const QDir pieces(QStringLiteral(":/bubble"));
    for (const QString &name : pieces.entryList(QDir::Files))
        if (!QFileInfo::exists(pathOf(name))) {
            m_names.take(name);
            writeWholeFile(pathOf(name), contentOf(pieces.filePath(name)));
        }
    if (!QFileInfo::exists(pathOf(QStringLiteral("app_res"))))
        m_names.take(QStringLiteral("app_res"));
}

void FilesFolder::addEmojiPictures(const std::vector<char32_t> &keys)
{
    if (keys.empty())
        return;
    const QString folder = pathOf(QStringLiteral("app_res/emoji"));
    makeFolder(folder);
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
    if (held.name.isEmpty() || QFileInfo(pathOf(held.name)).size() > longestTextBytes)
        return std::nullopt;
    return QString::fromUtf8(contentOf(pathOf(held.name)));
}

FilesFolder::Held &FilesFolder::hold(const _MsgAttachment &attachment)
{
    const auto known = m_held.find(&attachment);
    if (known != m_held.end())
        return known->second;
    return m_held.emplace(&attachment, Held{fetch(attachment), {}}).first->second;
}

QString FilesFolder::fetch(const _MsgAttachment &attachment)
{
    const QString wanted = fileNameOf(attachment);
    const bool isLocal = !attachment.local_path.isEmpty() && QFileInfo(attachment.local_path).isFile();
    if (!isLocal && (!m_source || attachment.source.isNull()))
        return missing(wanted, QStringLiteral("The backup does not list the file."));
    if (!isLocal && !m_source->hasContent(attachment.source))
        return missing(wanted, QStringLiteral("The backup lists the file but does not hold it."));

    const QString name = m_names.take(wanted);
    const QString target = pathOf(name);
    const CopyProgress stopWhenAsked = [this](std::uint64_t, std::uint64_t) { m_progress.check(); };
    try {
        if (isLocal)
            copyWithTime(attachment.local_path, target, stopWhenAsked);
        else
            m_source->fetchTo(attachment.source, target, stopWhenAsked);
    } catch (const Error &error) {
        m_names.release(name);
        // The sentence names the file that could not be written or the one that could not be read.
        if (error.sentence().contains(target))
            requireTargetWorks(attachment.total_bytes);
        return missing(wanted, error.sentence());
    }
    if (!isLocal && m_source->isLocked(attachment.source))
        m_summary.lockedFiles += name;
    ++m_summary.attachmentsCopied;
    return name;
}

QString FilesFolder::missing(const QString &name, const QString &reason)
{
    m_summary.missingAttachments += QStringLiteral("%1: %2").arg(name, reason);
    return {};
}

/// A file could not be written. When that lies in the folder and not in the file, every other one would fail
/// too.
void FilesFolder::requireTargetWorks(qint64 neededBytes) const
{
    const QString probe = pathOf(QStringLiteral(".probe"));
    writeWholeFile(probe, QByteArray(probeBytes, '\0'));
    QFile::remove(probe);
    const QStorageInfo disk(m_folder);
    if (disk.isValid() && disk.bytesAvailable() < std::max(neededBytes, probeBytes))
        throw Error(QStringLiteral("There is no room left on the disk of %1.").arg(m_folder));
}

QByteArray FilesFolder::makePicture(const _MsgAttachment &attachment, const Held &held)
{
    if (held.name.isEmpty())
        return {};
    const bool isCard = attachmentKind(attachment.mime_type) == AttachmentKind::VCard;
    const std::optional<QString> made =
        isCard ? vCardPictureOf(pathOf(held.name)) : thumbnailOf(pathOf(held.name));
    if (!made)
        return {};
    const QString name = m_names.take(QFileInfo(*made).fileName());
    writeWholeFile(pathOf(name), contentOf(*made));
    return "files/" + addressOf(name);
}
