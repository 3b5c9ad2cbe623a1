#pragma once

#include "export/attachment_copies.h"
#include "export/bubble_markup.h"

#include <unordered_map>

/// The folder "files" of one HTML export: what the pages need to look right, the attachments, and the small
/// pictures of both. Everything in it is complete or absent; what lies there already is never touched.
/// Attachments are fetched when a page asks for them, each once. One that cannot be had is reported, and
/// the export goes on; a target that cannot be written ends it.
class FilesFolder : public AttachmentLinks
{
public:
    /// Makes the folder and copies the pieces of the bubbles into it. `source` may be null. Throws Error.
    FilesFolder(const QString &outputFolder, FileSource *source, Progress &progress,
                ExportedMessages &exported);

    /// Throws Error and Cancelled.
    QByteArray link(const _MsgAttachment &attachment) override;
    QByteArray picture(const _MsgAttachment &attachment) override;
    std::optional<QString> text(const _MsgAttachment &attachment) override;

    /// Draws the emoji pictures that are not there yet.
    void addEmojiPictures(const std::vector<char32_t> &keys);

private:
    struct Held
    {
        QString name;                      // in the folder; empty when the attachment could not be had
        std::optional<QByteArray> picture; // its address, once somebody asked
    };

    QString m_folder;
    AttachmentCopies m_copies;
    std::unordered_map<const _MsgAttachment *, Held> m_held;

    void copyBubblePieces();
    Held &hold(const _MsgAttachment &attachment);
    QByteArray makePicture(const _MsgAttachment &attachment, const Held &held);
};
