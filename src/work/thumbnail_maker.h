#pragma once

#include "backup/scratch_folder.h"
#include "work/open_backup.h"

#include <QImage>

/// Makes thumbnails of the camera roll's items: out of the small pictures that the backup stores, else out of
/// the picture itself or the beginning of the video. They are kept as ".jpg" files in a private folder of the
/// system's temporary folder while this object lives. Used by one thread at a time.
class ThumbnailMaker
{
public:
    using Index = FileCatalogue::Index;

    explicit ThumbnailMaker(OpenBackupPtr backup);

    /// At most `side` pixels wide and high; null when there is none to be had. Throws Cancelled.
    QImage make(Index item, int side, Progress &progress);

private:
    OpenBackupPtr m_backup;
    ScratchFolder m_scratch;

    QString cachePath(Index item);
    QImage makeLarge(Index item, Progress &progress);
    std::vector<Index> storedThumbnails(Index item) const;
    QImage read(Index file, Progress &progress);
    QString localCopy(Index file, Progress &progress);
};
