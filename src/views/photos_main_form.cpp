#include "views/photos_main_form.h"

#include "base/texts.h"
#include "views/file_opener.h"
#include "views/item_model_photo_icon.h"
#include "views/local_number.h"
#include "views/notice_bar.h"
#include "views/photo_grid.h"
#include "views/state_stack.h"
#include "views/view_header.h"
#include "work/background_job.h"
#include "work/export_bk_file_thread.h"
#include "work/load_items_thread.h"
#include "work/run_job.h"

#include <QAction>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <numeric>

namespace {
constexpr int smallestCell = 80;
constexpr int largestCell = 320;
constexpr int cellStep = 20;
constexpr int sliderWidth = 140;

template <CameraRollKind Kind>
QList<FileCatalogue::Index> readRoll(BackupManifest &backup, Report &report)
{
    return readCameraRoll(backup, Kind, report);
}
} // namespace

PhotosMainForm::PhotosMainForm(OpenBackupPtr backup, CameraRollKind kind, QWidget *parent)
    : DataView(parent),
      m_backup(std::move(backup)),
      m_kind(kind),
      m_header(new ViewHeader(textFor(kind == CameraRollKind::Photo ? "IDS_PHOTOS" : "IDS_VIDEOS"))),
      m_filter(m_header->addFilter(textFor("IDS_FILTER_FILES"))),
      m_grid(new PhotoGrid),
      m_size(new QSlider(Qt::Horizontal)),
      m_states(new StateStack(m_grid)),
      m_opener(new FileOpener(m_backup, this)),
      m_notices(new NoticeBar),
      m_open(new QAction(textFor("IDS_OPEN_ITEM"), this))
{
    buildHeader();
    buildGrid();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_notices);
    layout->addWidget(m_states, 1);
    connect(m_filter, &QLineEdit::textChanged, this, &PhotosMainForm::applyFilter);
    connect(m_header, &ViewHeader::filterLeft, m_grid, [this] { m_grid->setFocus(); });
    connect(m_states, &StateStack::actionRequested, m_filter, &QLineEdit::clear);
    reload();
}

PhotosMainForm::~PhotosMainForm()
{
    m_grid->setModel(nullptr); // the model goes first
}

void PhotosMainForm::buildHeader()
{
    m_header->addAction(m_open);
    m_header->addAction(exportAction());
    connect(m_open, &QAction::triggered, this, &PhotosMainForm::openCurrent);
    auto *label = new QLabel(textFor("IDS_PICTURE_SIZE"));
    m_size->setObjectName(QStringLiteral("sliderSize"));
    m_size->setAccessibleName(textFor("IDS_PICTURE_SIZE"));
    m_size->setToolTip(textFor("IDS_PICTURE_SIZE"));
    m_size->setFixedWidth(sliderWidth);
    m_size->setRange(smallestCell, largestCell);
    m_size->setSingleStep(cellStep);
    m_size->setPageStep(2 * cellStep);
    m_size->setValue(m_grid->cellSide());
    label->setBuddy(m_size);
    m_header->addWidget(label);
    m_header->addWidget(m_size);
    connect(m_size, &QSlider::valueChanged, m_grid, &PhotoGrid::setCellSide);
}

void PhotosMainForm::buildGrid()
{
    m_grid->setObjectName(QStringLiteral("gridPhotos"));
    m_grid->setAccessibleName(textFor(m_kind == CameraRollKind::Photo ? "IDS_PHOTOS" : "IDS_VIDEOS"));
    m_grid->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_grid->QWidget::addAction(m_open);
    m_grid->QWidget::addAction(exportAction());
    connect(m_grid, &PhotoGrid::shownRowsChanged, this, &PhotosMainForm::showRows, Qt::QueuedConnection);
    connect(m_grid, &QAbstractItemView::activated, this, &PhotosMainForm::openCurrent);
}

void PhotosMainForm::reload()
{
    auto model = std::make_unique<ItemModelPhotoIcon>(m_backup, m_kind);
    model->setFilter(m_filter->text());
    m_grid->setModel(model.get());
    m_model = std::move(model);
    connect(m_model.get(), &ItemModelPhotoIcon::thumbnailsArrived, this, &PhotosMainForm::thumbnailRefresh);
    connect(m_grid->selectionModel(), &QItemSelectionModel::selectionChanged, this, &PhotosMainForm::refresh);
    applyFilter();
    lookForContent();
}

// Fifty thousand files are not looked at on the window's thread.
void PhotosMainForm::lookForContent()
{
    m_notices->setReport(m_backup->manifest().report());
    using Worker = LoadItemsThread<FileCatalogue::Index>;
    auto worker =
        std::make_unique<Worker>(m_backup, m_kind == CameraRollKind::Photo ? readRoll<CameraRollKind::Photo>
                                                                           : readRoll<CameraRollKind::Video>);
    const Worker *looking = worker.get();
    m_look = std::make_unique<BackgroundJob>(std::move(worker));
    connect(m_look.get(), &BackgroundJob::succeeded, this,
            [this, looking] { m_notices->setReport(looking->report()); });
    m_look->start();
}

QString PhotosMainForm::noneText() const
{
    return textFor(m_kind == CameraRollKind::Photo ? "IDS_NO_PHOTOS" : "IDS_NO_VIDEOS");
}

void PhotosMainForm::applyFilter()
{
    m_model->setFilter(m_filter->text());
    if (m_model->total() == 0)
        m_states->showEmpty(noneText(), textFor("IDS_NO_PHOTOS_HINT"));
    else if (m_model->rowCount() == 0)
        m_states->showEmpty(textFor("IDS_NOTHING_MATCHES"),
                            textFor("IDS_NO_FILE_NAMED_%1").arg(m_filter->text().trimmed()),
                            textFor("IDS_SHOW_ALL_FILES"));
    else
        m_states->showContent();
    m_header->setCount(textFor("IDS_TOTAL_%1").arg(localNumber(m_model->rowCount())));
    refresh();
}

void PhotosMainForm::refresh()
{
    const qint64 selected = m_grid->selectionModel()->selectedIndexes().size();
    const bool isEmpty = m_model->rowCount() == 0;
    setExportState(selected == 0 ? textFor("IDS_EXPORT_ALL") : textFor("IDS_EXPORT_ITEMS", selected),
                   isEmpty ? textFor("IDS_WHY_NOTHING_TO_EXPORT") : QString());
    m_open->setEnabled(selected == 1);
    m_open->setToolTip(textFor(selected == 1 ? "IDS_OPEN_ITEM" : "IDS_WHY_SELECT_ONE"));
    setStatus(m_model->total() == 0 ? noneText()
              : isEmpty             ? textFor("IDS_NOTHING_MATCHES")
                                    : textFor("IDS_%1_SELECTED_%2")
                              .arg(textFor("IDS_FILE_COUNT", m_model->rowCount()), localNumber(selected)));
}

void PhotosMainForm::showRows(int firstRow, int endRow)
{
    m_model->show(firstRow, endRow, m_grid->pictureSide());
}

void PhotosMainForm::thumbnailRefresh()
{
    m_grid->viewport()->update();
}

void PhotosMainForm::openCurrent()
{
    const QModelIndex current = m_grid->currentIndex();
    if (current.isValid())
        m_opener->open(m_model->item(current.row()), {});
}

QList<int> PhotosMainForm::chosenRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : m_grid->selectionModel()->selectedIndexes())
        rows.append(index.row());
    if (rows.isEmpty()) {
        rows.resize(m_model->rowCount());
        std::iota(rows.begin(), rows.end(), 0);
    }
    return rows;
}

void PhotosMainForm::exportSelection()
{
    const QString start = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString folder = QFileDialog::getExistingDirectory(this, textFor("IDS_EXPORT_INTO_FOLDER"), start);
    if (!folder.isEmpty())
        exportTo(folder);
}

bool PhotosMainForm::exportTo(const QString &folder)
{
    QList<NamedExtract> files;
    for (const int row : chosenRows())
        files.append({m_model->item(row), m_model->name(row)});
    if (files.isEmpty())
        return false;
    auto worker = std::make_unique<ExportBKFileThread>(m_backup, std::move(files), folder);
    return runJob(textFor("IDS_EXTRACTING_NOW"), worker, this, folder);
}
