#pragma once

#include "base/report.h"
#include "messages/stored_attachments.h"

#include <QFile>

#include <functional>
#include <vector>

/// Copies attachment files into a store during one job. What the job brought is taken away again when this
/// object goes without keep(); what a killed process left behind is taken away by the next job.
class AttachmentIntake
{
public:
    /// `source` may be null. Make it inside the job's transaction, so that no other job is at work.
    AttachmentIntake(const QString &folder, FileSource *source);
    ~AttachmentIntake();
    AttachmentIntake(const AttachmentIntake &) = delete;
    AttachmentIntake &operator=(const AttachmentIntake &) = delete;

    /// Removes the files of an earlier job that never ended. `isKnown` tells whether the store has an
    /// attachment of that GUID. Call it inside a transaction, too.
    static void removeLeftovers(const QString &folder,
                                const std::function<bool(const QString &guid)> &isKnown);

    /// Brings the file of an attachment to its place, unless it is there whole. `guid` and `place` are those of
    /// the store. A file that cannot be had or written is reported and left out, and one that the source has only
    /// the beginning of is reported. Throws Error when the disk is full.
    void take(const _MsgAttachment &attachment, const QString &guid, const SourceFile &place);

    /// The job has ended well.
    void keep();

    /// What was left out; what was copied is what it has done.
    const Report &report() const { return m_report; }

private:
    void note(const QString &guid, const SourceFile &place);
    void fetch(const _MsgAttachment &attachment, const QString &destination);
    void complete(const _MsgAttachment &attachment, const QString &stored);
    void removeFile(const SourceFile &file);
    void removeJournal();

    StoredAttachments m_store;
    FileSource *m_source;
    QFile m_journal;
    std::vector<SourceFile> m_taken;
    Report m_report;
};
