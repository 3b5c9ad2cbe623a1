#pragma once

#include "backup/scratch_folder.h"
#include "base/progress.h"
#include "base/report.h"
#include "messages/msg_records.h"

#include <QImage>

#include <functional>
#include <optional>

class FileSource;

/// What paper shows of the files that came with messages.
class PrintedAttachments
{
public:
    virtual ~PrintedAttachments() = default;

    /// The small picture of an image or the picture of a card; null when there is none.
    virtual QImage picture(const _MsgAttachment &attachment) = 0;
    struct Text
    {
        bool isThere = false;
        std::optional<QString> content; // nothing when it is too long for a bubble
    };
    /// What a text file says.
    virtual Text text(const _MsgAttachment &attachment) = 0;
};

/// Fetches the files from a source, one at a time, and keeps none of them. One that cannot be had is noted.
class FetchedAttachments : public PrintedAttachments
{
public:
    /// `source` may be null; the others must outlive this.
    FetchedAttachments(FileSource *source, Progress &progress, Report &report);

    /// Throws Cancelled, and Error when the disk is full.
    QImage picture(const _MsgAttachment &attachment) override;
    Text text(const _MsgAttachment &attachment) override;

private:
    FileSource *m_source;
    Progress &m_progress;
    Report &m_report;
    ScratchFolder m_scratch;

    void withFile(const _MsgAttachment &attachment, const std::function<void(const QString &path)> &read);
};
