#include "views/sound_main_form.h"

#include "base/texts.h"
#include "views/abs_sound_model.h"
#include "views/file_opener.h"
#include "views/local_number.h"
#include "views/notice_bar.h"
#include "views/roomy_delegate.h"
#include "views/sound_player.h"
#include "views/state_stack.h"
#include "views/view_header.h"
#include "work/background_job.h"
#include "work/export_bk_file_thread.h"
#include "work/fetch_file_thread.h"
#include "work/run_job.h"

#include <QAction>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QStandardPaths>
#include <QTreeView>
#include <QVBoxLayout>

namespace {
constexpr int dateWidth = 170;
constexpr int durationWidth = 100;
} // namespace

SoundMainForm::SoundMainForm(OpenBackupPtr backup, const SoundTexts &texts, QWidget *parent)
    : DataView(parent),
      m_backup(std::move(backup)),
      m_texts(texts),
      m_proxy(new QSortFilterProxyModel(this)),
      m_header(new ViewHeader(textFor(texts.title))),
      m_notices(new NoticeBar),
      m_filter(m_header->addFilter(textFor(texts.filter))),
      m_list(new QTreeView),
      m_player(new SoundPlayer),
      m_opener(new FileOpener(m_backup, this)),
      m_open(new QAction(textFor("IDS_OPEN_ITEM"), this))
{
    m_header->addAction(m_open);
    m_header->addAction(exportAction());
    buildList();
    auto *content = new QWidget;
    auto *column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_list, 1);
    column->addWidget(m_player);
    m_states = new StateStack(content);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_notices);
    layout->addWidget(m_states, 1);
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_proxy->setFilterFixedString(text);
        refresh();
    });
    connect(m_header, &ViewHeader::filterLeft, m_list, [this] { m_list->setFocus(); });
    connect(m_states, &StateStack::actionRequested, this, [this] { reload(); });
    connect(m_open, &QAction::triggered, this, &SoundMainForm::openCurrent);
    connect(m_player, &SoundPlayer::fileWanted, this, &SoundMainForm::fetchForPlaying);
}

SoundMainForm::~SoundMainForm()
{
    m_proxy->setSourceModel(nullptr); // the model goes first
}

void SoundMainForm::buildList()
{
    m_proxy->setFilterRole(RecordRole::Search);
    m_proxy->setSortRole(RecordRole::Sort);
    m_proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_proxy->setSortLocaleAware(true);
    m_list->setObjectName(QStringLiteral("listSounds"));
    m_list->setAccessibleName(textFor(m_texts.title));
    m_list->setModel(m_proxy);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setItemDelegate(new RoomyDelegate(m_list));
    m_list->setAllColumnsShowFocus(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setSortingEnabled(true);
    m_list->header()->setStretchLastSection(false);
    m_list->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_list->QWidget::addAction(m_open);
    m_list->QWidget::addAction(exportAction());
    connect(m_list, &QAbstractItemView::activated, this, &SoundMainForm::openCurrent);
    auto *space = new QShortcut(QKeySequence(Qt::Key_Space), m_list);
    space->setContext(Qt::WidgetShortcut);
    connect(space, &QShortcut::activated, m_player, &SoundPlayer::toggle);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &SoundMainForm::refresh);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &SoundMainForm::onCurrentChanged);
}

void SoundMainForm::load(std::unique_ptr<WorkerThread> worker,
                         std::function<std::unique_ptr<AbsSoundModel>()> makeModel, bool isThere)
{
    m_job = std::make_unique<BackgroundJob>(std::move(worker));
    connect(m_job.get(), &BackgroundJob::succeeded, this,
            [this, makeModel = std::move(makeModel)] { showModel(makeModel()); });
    connect(m_job.get(), &BackgroundJob::failed, this, [this, isThere](const QString &text) {
        const Report &catalogue = m_backup->manifest().report();
        setReport(catalogue);
        const bool isKnown = isThere || catalogue.isFailure();
        if (isKnown)
            m_states->showFailed(textFor("IDS_SOUNDS_FAILED"), text);
        else
            m_states->showEmpty(textFor(m_texts.empty), text);
        setStatus(textFor(isKnown ? "IDS_SOUNDS_FAILED" : m_texts.empty));
        setExportState(textFor("IDS_EXPORT"), text);
    });
    m_fetching.reset();
    m_player->setSound(0, {});
    m_proxy->setSourceModel(nullptr);
    m_model.reset();
    m_header->setCount({});
    setReport({});
    m_states->showLoading(textFor("IDS_LOADING_RECORDS"));
    setStatus(textFor("IDS_LOADING_RECORDS"));
    setExportState(textFor("IDS_EXPORT"), textFor("IDS_WHY_LOADING"));
    m_open->setEnabled(false);
    m_job->start();
}

void SoundMainForm::showModel(std::unique_ptr<AbsSoundModel> model)
{
    m_model = std::move(model);
    m_proxy->setSourceModel(m_model.get());
    m_list->header()->setSectionResizeMode(AbsSoundModel::Title, QHeaderView::Stretch);
    m_list->header()->resizeSection(AbsSoundModel::Date, dateWidth);
    m_list->header()->resizeSection(AbsSoundModel::Duration, durationWidth);
    m_list->sortByColumn(AbsSoundModel::Date, Qt::DescendingOrder);
    if (m_model->rowCount() == 0) {
        if (m_problems.isEmpty())
            m_states->showEmpty(textFor(m_texts.empty), textFor("IDS_NO_SOUNDS_HINT"));
        else
            m_states->showFailed(textFor("IDS_SOUNDS_FAILED"), m_problems.join(QLatin1Char('\n')));
        setStatus(textFor(m_texts.empty));
        setExportState(textFor("IDS_EXPORT"), textFor(m_texts.empty));
        return;
    }
    m_states->showContent();
    m_list->setCurrentIndex(m_proxy->index(0, 0));
    refresh();
}

void SoundMainForm::setReport(const Report &report)
{
    m_problems = problemsOf(report);
    m_notices->setReport(report);
}

int SoundMainForm::currentRow() const
{
    const QModelIndex current = m_list->currentIndex();
    return current.isValid() ? current.data(RecordRole::Number).toInt() : -1;
}

QList<int> SoundMainForm::chosenRows() const
{
    QModelIndexList chosen = m_list->selectionModel()->selectedRows();
    for (int row = 0; row < m_proxy->rowCount() && !m_list->selectionModel()->hasSelection(); ++row)
        chosen.append(m_proxy->index(row, 0));
    QList<int> rows;
    for (const QModelIndex &index : chosen)
        rows.append(index.data(RecordRole::Number).toInt());
    return rows;
}

void SoundMainForm::onCurrentChanged()
{
    const int row = currentRow();
    m_fetching.reset();
    if (row < 0)
        return;
    const bool hasFile = m_model->file(row) != FileCatalogue::none;
    const int seconds =
        m_list->currentIndex().siblingAtColumn(AbsSoundModel::Duration).data(RecordRole::Sort).toInt();
    m_player->setSound(seconds, hasFile ? QString() : textFor(m_texts.withoutFile));
}

void SoundMainForm::refresh()
{
    if (!m_model)
        return;
    const qsizetype selected = m_list->selectionModel()->selectedRows().size();
    const int shown = m_proxy->rowCount();
    m_header->setCount(localNumber(shown));
    setStatus(shown == 0 ? textFor("IDS_NOTHING_MATCHES")
                         : textFor("IDS_%1_SELECTED_%2").arg(localNumber(shown), localNumber(selected)));
    setExportState(selected == 0 ? textFor("IDS_EXPORT_ALL") : textFor("IDS_EXPORT_RECORDS", selected),
                   shown == 0 ? textFor("IDS_NOTHING_MATCHES") : QString());
    m_open->setEnabled(selected == 1);
    m_open->setToolTip(textFor(selected == 1 ? "IDS_OPEN_ITEM" : "IDS_WHY_SELECT_ONE"));
}

void SoundMainForm::openCurrent()
{
    if (const int row = currentRow(); row >= 0)
        m_opener->open(m_model->file(row), textFor(m_texts.withoutFile));
}

void SoundMainForm::fetchForPlaying()
{
    auto worker = std::make_unique<FetchFileThread>(m_backup, m_model->file(currentRow()));
    const FetchFileThread *fetch = worker.get();
    m_fetching = std::make_unique<BackgroundJob>(std::move(worker));
    connect(m_fetching.get(), &BackgroundJob::succeeded, this,
            [this, fetch] { m_player->play(fetch->path()); });
    connect(m_fetching.get(), &BackgroundJob::failed, m_player, &SoundPlayer::showProblem);
    m_fetching->start();
}

void SoundMainForm::exportSelection()
{
    const QString start = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = QFileDialog::getExistingDirectory(this, textFor("IDS_EXPORT_INTO_FOLDER"), start);
    if (!folder.isEmpty())
        exportTo(folder);
}

bool SoundMainForm::exportTo(const QString &folder)
{
    if (!m_model)
        return false;
    QList<NamedExtract> files;
    QStringList withoutFile;
    for (const int row : chosenRows()) {
        if (m_model->file(row) == FileCatalogue::none)
            withoutFile.append(textFor("IDS_CANT_FIND_ITEM_%1").arg(m_model->description(row)));
        else
            files.append({m_model->file(row), m_model->exportedName(row)});
    }
    auto worker = std::make_unique<ExportBKFileThread>(m_backup, std::move(files), folder, m_texts.extracted);
    worker->setWithoutFile(withoutFile);
    return runJob(textFor(m_texts.extracting), worker, this, folder);
}
