#include "views/item_model_photo_icon.h"

#include "personal/media_names.h"
#include "work/background_job.h"
#include "work/load_thumbnail_thread.h"
#include "work/shown_text.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <algorithm>

namespace {
constexpr qsizetype keptKilobytes = 192 * 1024;
constexpr int bytesPerKilobyte = 1024;
constexpr int monthsPerYear = 12;

QDate dayOf(std::uint32_t unixSeconds)
{
    return QDateTime::fromSecsSinceEpoch(unixSeconds).date();
}
} // namespace

ItemModelPhotoIcon::ItemModelPhotoIcon(OpenBackupPtr backup, CameraRollKind kind, QObject *parent)
    : QAbstractListModel(parent),
      m_backup(std::move(backup)),
      m_kind(kind),
      m_kept(keptKilobytes),
      m_maker(std::make_shared<ThumbnailMaker>(m_backup)),
      m_queue(std::make_shared<ThumbnailQueue>())
{
    const QList<Index> byPath = cameraRollItems(m_backup->manifest(), kind);
    m_all.assign(byPath.begin(), byPath.end());
    std::stable_sort(m_all.begin(), m_all.end(), [this](Index a, Index b) {
        return catalogue().lastModified(a) > catalogue().lastModified(b);
    });
    m_shown = m_all;
}

ItemModelPhotoIcon::~ItemModelPhotoIcon() = default;

int ItemModelPhotoIcon::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

QString ItemModelPhotoIcon::name(int row) const
{
    return cameraItemName(catalogue(), item(row));
}

QString ItemModelPhotoIcon::toolTip(int row) const
{
    const QLocale locale = QLocale::system();
    const QString date = locale.toString(QDateTime::fromSecsSinceEpoch(catalogue().lastModified(item(row))),
                                         QLocale::LongFormat);
    const QString size = locale.formattedDataSize(static_cast<qint64>(catalogue().sizeBytes(item(row))));
    return toolTipOf(QStringList{name(row), date, size}.join(QLatin1Char('\n')));
}

QVariant ItemModelPhotoIcon::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return name(row);
    case Qt::ToolTipRole:
        return toolTip(row);
    case Group: {
        const QDate day = dayOf(catalogue().lastModified(item(row)));
        return day.year() * monthsPerYear + day.month();
    }
    case GroupTitle:
        return QLocale::system().toString(dayOf(catalogue().lastModified(item(row))),
                                          QStringLiteral("MMMM yyyy"));
    case Thumbnail: {
        const Kept *kept = m_kept.object(item(row));
        return kept ? kept->picture : QPixmap();
    }
    case Badge:
        return name(row).section(QLatin1Char('.'), -1).toUpper();
    case IsVideo:
        return m_kind == CameraRollKind::Video;
    default:
        return {};
    }
}

void ItemModelPhotoIcon::setFilter(const QString &text)
{
    if (text.trimmed() == m_filter)
        return;
    beginResetModel();
    m_filter = text.trimmed();
    m_shown.clear();
    std::copy_if(m_all.begin(), m_all.end(), std::back_inserter(m_shown), [this](Index item) {
        return m_filter.isEmpty() ||
               cameraItemName(catalogue(), item).contains(m_filter, Qt::CaseInsensitive);
    });
    endResetModel();
}

void ItemModelPhotoIcon::show(int firstRow, int endRow, int side)
{
    // A screen more in either direction is ready before it is scrolled to.
    const int screen = endRow - firstRow;
    std::vector<ThumbnailQueue::Wanted> wanted;
    const auto want = [&](int from, int to) {
        for (int row = std::max(from, 0); row < std::min(to, rowCount()); ++row) {
            const Kept *kept = m_kept.object(item(row));
            if (!kept || (kept->side < side && !kept->picture.isNull()))
                wanted.push_back({item(row), side});
        }
    };
    want(firstRow, endRow);
    want(endRow, endRow + screen);
    want(firstRow - screen, firstRow);
    const bool isAnyWanted = !wanted.empty();
    m_queue->want(std::move(wanted));
    if (isAnyWanted && !(m_job && m_job->isRunning()))
        startWorker();
}

void ItemModelPhotoIcon::startWorker()
{
    m_job = std::make_unique<BackgroundJob>(std::make_unique<LoadThumbnailThread>(m_maker, m_queue));
    connect(m_job.get(), &BackgroundJob::progressed, this, &ItemModelPhotoIcon::takeMade);
    // The worker may have ended just before more was wanted. Queued, since the job is still sending.
    const auto onEnd = [this] {
        takeMade();
        if (!m_queue->isEmpty() && !m_job->isRunning())
            startWorker();
    };
    connect(m_job.get(), &BackgroundJob::succeeded, this, onEnd, Qt::QueuedConnection);
    m_job->start();
}

void ItemModelPhotoIcon::takeMade()
{
    const std::vector<ThumbnailQueue::Made> all = m_queue->takeMade();
    for (const ThumbnailQueue::Made &made : all) {
        const auto bytes = static_cast<qsizetype>(made.image.sizeInBytes());
        m_kept.insert(made.item, new Kept{QPixmap::fromImage(made.image), made.side},
                      1 + bytes / bytesPerKilobyte);
    }
    if (!all.empty())
        emit thumbnailsArrived();
}
