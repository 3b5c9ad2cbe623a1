#pragma once

#include "personal/media_items.h"
#include "work/thumbnail_queue.h"
#include "work/open_backup.h"

#include <QAbstractListModel>
#include <QCache>
#include <QIcon>
#include <QPixmap>
#include <QSet>

class BackgroundJob;
class ThumbnailMaker;

/// The photos or the videos of a backup, the newest first. Thumbnails are made for what is on the screen, on
/// a worker, and kept in memory up to a limit.
class ItemModelPhotoIcon : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        Group = Qt::UserRole, // a number that is the same for the items of one month
        GroupTitle,           // "January 2012"
        Thumbnail,            // QPixmap; null while it is not there
        Badge,                // the ending of the name, for what has no thumbnail
        IsVideo,
    };

    ItemModelPhotoIcon(OpenBackupPtr backup, CameraRollKind kind, QObject *parent = nullptr);
    ~ItemModelPhotoIcon() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    /// Shows only the items whose name holds `text`.
    void setFilter(const QString &text);
    FileCatalogue::Index item(int row) const { return m_shown.at(static_cast<std::size_t>(row)); }
    QString name(int row) const;
    /// All items, whatever the filter.
    qsizetype total() const { return static_cast<qsizetype>(m_all.size()); }

    /// What is on the screen now, and how large a picture may be there, in pixels: thumbnails of these rows
    /// are made, those of others no more.
    void show(int firstRow, int endRow, int side);

signals:
    /// Some rows have got their thumbnails.
    void thumbnailsArrived();

private:
    using Index = FileCatalogue::Index;

    struct Kept
    {
        QPixmap picture; // null: there is none to be had
        int side;
    };

    const FileCatalogue &catalogue() const { return m_backup->manifest().catalogue(); }
    void startWorker();
    void takeMade();
    QString toolTip(int row) const;

    OpenBackupPtr m_backup;
    CameraRollKind m_kind;
    std::vector<Index> m_all; // newest first
    std::vector<Index> m_shown;
    QString m_filter;
    mutable QCache<Index, Kept> m_kept; // costs are kilobytes
    std::shared_ptr<ThumbnailMaker> m_maker;
    std::shared_ptr<ThumbnailQueue> m_queue;
    std::unique_ptr<BackgroundJob> m_job;
};
