#pragma once

#include "base/progress.h"
#include "export/free_names.h"
#include "export/message_export.h"

class FileSource;

/// Copies attachments into a folder, each under a name that is free there; what lies in it already is never
/// touched. Every copy is complete or absent. One that cannot be had or written is reported, and the work
/// goes on; a folder that cannot be written, or a full disk, ends it.
class AttachmentCopies
{
public:
    /// Makes the folder. `source` may be null. Throws Error.
    AttachmentCopies(const QString &folder, FileSource *source, Progress &progress,
                     ExportedMessages &exported);

    /// The name of the copy in the folder; empty when the attachment cannot be had. Throws Error and
    /// Cancelled.
    QString copy(const _MsgAttachment &attachment);

    /// Notes that the copy of an attachment is a picture that cannot be shown.
    void noteBadPicture(const _MsgAttachment &attachment);

    FreeNames &names() { return m_names; }
    QString pathOf(const QString &name) const { return m_folder + QLatin1Char('/') + name; }

private:
    QString m_folder;
    FileSource *m_source;
    Progress &m_progress;
    ExportedMessages &m_exported;
    FreeNames m_names;

    void requireTargetWorks(qint64 neededBytes) const;
};

/// Throws Error when it cannot be made.
void makeFolder(const QString &path);
