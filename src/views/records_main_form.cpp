#include "views/records_main_form.h"

#include "base/texts.h"
#include "personal/bookmark_db.h"
#include "views/class_texts.h"
#include "views/export_target.h"
#include "views/item_model_bookmarks.h"
#include "views/item_model_records.h"
#include "views/local_database_dlg.h"
#include "views/local_number.h"
#include "views/month_grid.h"
#include "views/notice_bar.h"
#include "views/record_filter.h"
#include "views/roomy_delegate.h"
#include "views/safe_text_browser.h"
#include "views/state_stack.h"
#include "views/view_header.h"
#include "work/background_job.h"
#include "work/message_boxes.h"
#include "work/record_threads.h"
#include "work/run_job.h"

#include <QAction>
#include <QFileDialog>
#include <QHeaderView>
#include <QIcon>
#include <QLineEdit>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

namespace {
constexpr int listWidth = 480;
constexpr int detailWidth = 360;
constexpr int pictureSide = 32;
} // namespace

RecordsMainForm::RecordsMainForm(RecordSource source, DataClass dataClass, QWidget *parent)
    : DataView(parent),
      m_source(std::move(source)),
      m_class(dataClass),
      m_proxy(new RecordFilter(this)),
      m_save(new QAction(textFor("IDS_SAVE_TO_DATABASE"), this)),
      m_remove(new QAction(textFor("IDS_DELETE"), this)),
      m_import(new QAction(textFor("IDS_IMPORT_CARDS"), this))
{
    m_save->setIcon(QIcon(QStringLiteral(":/res/act_save.png")));
    m_remove->setIcon(QIcon(QStringLiteral(":/res/act_remove.png")));
    m_remove->setShortcut(QKeySequence::Delete);
    m_remove->setShortcutContext(Qt::WidgetShortcut);
    connect(m_save, &QAction::triggered, this, &RecordsMainForm::saveToDatabase);
    connect(m_remove, &QAction::triggered, this, &RecordsMainForm::removeSelection);
    m_import->setIcon(QIcon(QStringLiteral(":/res/act_import.png")));
    m_import->setToolTip(textFor("IDS_IMPORT_CARDS_HINT"));
    connect(m_import, &QAction::triggered, this, [this] { emit importRequested(m_source.folder); });
    buildWidgets();
    reload();
}

RecordsMainForm::~RecordsMainForm()
{
    m_proxy->setSourceModel(nullptr); // the model goes first
}

QAction *RecordsMainForm::saveAction() const
{
    return m_source.isLocal() ? nullptr : m_save;
}

QAction *RecordsMainForm::removeAction() const
{
    return m_source.isLocal() ? m_remove : nullptr;
}

void RecordsMainForm::buildWidgets()
{
    const ClassTexts &texts = classTexts(m_class);
    m_header = new ViewHeader(textFor(texts.title));
    m_filter = m_header->addFilter(textFor(texts.filter));
    if (QAction *action = m_source.isLocal() ? removeAction() : saveAction())
        m_header->addAction(action);
    if (takesCards())
        m_header->addAction(m_import);
    m_header->addAction(exportAction());
    buildList();
    auto *splitter = new QSplitter;
    splitter->addWidget(m_list);
    splitter->addWidget(buildDetail());
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({listWidth, detailWidth});
    splitter->setChildrenCollapsible(false);
    m_notices = new NoticeBar;
    m_notices->offerEverything();
    connect(m_notices, &NoticeBar::scopeWanted, this, [this](Scope scope) {
        m_scope = scope;
        reload();
    });
    m_states = new StateStack(splitter);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_notices);
    layout->addWidget(m_states, 1);
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_proxy->setFilterFixedString(text);
        // What the filter had taken away comes back closed.
        if (m_class == DataClass::Calendar || !text.isEmpty())
            m_list->expandAll();
        refresh();
    });
    connect(m_header, &ViewHeader::filterLeft, m_list, [this] { m_list->setFocus(); });
    connect(m_states, &StateStack::actionRequested, this, [this] {
        if (m_records)
            m_import->trigger();
        else
            reload();
    });
}

void RecordsMainForm::buildList()
{
    m_list = new QTreeView;
    m_list->setObjectName(QStringLiteral("listRecords"));
    m_list->setAccessibleName(textFor(classTexts(m_class).title));
    m_list->setModel(m_proxy);
    m_list->setRootIsDecorated(m_class == DataClass::Bookmarks || m_class == DataClass::Calendar);
    if (m_class == DataClass::Contacts)
        m_list->setIconSize({pictureSide, pictureSide});
    m_list->setUniformRowHeights(true);
    m_list->setItemDelegate(new RoomyDelegate(m_list));
    m_list->setAllColumnsShowFocus(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setSortingEnabled(true);
    m_list->header()->setStretchLastSection(false);
    m_list->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_list->QWidget::addAction(exportAction());
    m_list->QWidget::addAction(m_source.isLocal() ? m_remove : m_save);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &RecordsMainForm::refresh);
}

QWidget *RecordsMainForm::buildDetail()
{
    m_detail = new SafeTextBrowser;
    m_detail->setObjectName(QStringLiteral("recordDetail"));
    m_detail->setAccessibleName(textFor("IDS_ACC_DETAIL"));
    m_detail->document()->setDocumentMargin(24);
    if (m_class != DataClass::Calendar)
        return m_detail;
    m_month = new MonthGrid;
    connect(m_month, &MonthGrid::dayPicked, this, &RecordsMainForm::showDay);
    auto *both = new QWidget;
    auto *layout = new QVBoxLayout(both);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_month);
    layout->addWidget(m_detail, 1);
    return both;
}

void RecordsMainForm::reload()
{
    auto worker = std::make_unique<LoadRecordsThread>(m_source, m_class, m_scope);
    LoadRecordsThread *loading = worker.get();
    m_job = std::make_unique<BackgroundJob>(std::move(worker));
    connect(m_job.get(), &BackgroundJob::succeeded, this, [this, loading] { onLoaded(*loading); });
    connect(m_job.get(), &BackgroundJob::failed, this, &RecordsMainForm::onFailed);
    m_detail->clear();
    m_proxy->setSourceModel(nullptr);
    m_model.reset();
    m_records.reset();
    m_notices->setReport({});
    m_states->showLoading(textFor("IDS_LOADING_RECORDS"));
    showState(textFor("IDS_WHY_LOADING"));
    setStatus(textFor("IDS_LOADING_RECORDS"));
    m_job->start();
}

void RecordsMainForm::onLoaded(const LoadRecordsThread &worker)
{
    m_records = worker.records();
    m_notices->setReport(worker.report(), m_scope);
    showRecords();
    if (m_model->rowCount() == 0) {
        showEmpty(worker.report());
        return;
    }
    m_states->showContent();
    const QModelIndex first = m_proxy->index(0, 0);
    m_list->setCurrentIndex(m_class == DataClass::Calendar ? m_proxy->index(0, 0, first) : first);
    refresh();
}

// Nothing is said to be all there is while something could not be read.
void RecordsMainForm::showEmpty(const Report &report)
{
    if (report.isFailure()) {
        onFailed(problemsOf(report).join(QLatin1Char('\n')));
        return;
    }
    const QString none = textFor(classTexts(m_class).empty);
    if (takesCards())
        m_states->showEmpty(none, textFor("IDS_EMPTY_LOCAL_CONTACTS_HINT"), m_import->text());
    else if (report.count(IssueKind::Hidden) > 0)
        m_states->showEmpty(none, {});
    else
        m_states->showEmpty(none,
                            textFor(m_source.isLocal() ? "IDS_EMPTY_LOCAL_HINT" : "IDS_EMPTY_BACKUP_HINT"));
    m_header->setCount({});
    showState(none);
    setStatus(none);
}

void RecordsMainForm::onFailed(const QString &text)
{
    m_states->showFailed(textFor("IDS_RECORDS_FAILED"), text);
    m_header->setCount({});
    showState(textFor("IDS_RECORDS_FAILED"));
    setStatus(textFor("IDS_RECORDS_FAILED"));
}

void RecordsMainForm::showRecords()
{
    QHeaderView *header = m_list->header();
    if (m_class == DataClass::Bookmarks) {
        m_model = std::make_unique<ItemModelBookmarks>(m_records);
        m_proxy->setSourceModel(m_model.get());
        header->setSectionResizeMode(ItemModelBookmarks::Url, QHeaderView::Stretch);
        header->resizeSection(ItemModelBookmarks::Title, listWidth / 2);
        m_list->sortByColumn(-1, Qt::AscendingOrder);
        m_list->expandToDepth(1);
        return;
    }
    const RecordTable table = makeRecordTable(m_class, m_records);
    m_model = std::make_unique<ItemModelRecords>(table);
    m_proxy->setSourceModel(m_model.get());
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const int section = static_cast<int>(i);
        header->setSectionResizeMode(section, table.columns[i].width == 0 ? QHeaderView::Stretch
                                                                          : QHeaderView::Interactive);
        if (table.columns[i].width != 0)
            header->resizeSection(section, table.columns[i].width);
    }
    if (m_class == DataClass::Contacts)
        m_list->sortByColumn(0, Qt::AscendingOrder);
    else
        m_list->sortByColumn(m_class == DataClass::Calls ? 2 : 1, Qt::DescendingOrder);
    m_list->expandAll();
    if (m_month)
        m_month->setEvents(std::get<QList<CalendarEvent>>(*m_records));
}

// Selects the events of the day that was pointed at.
void RecordsMainForm::showDay(const QDate &day)
{
    if (!m_records)
        return;
    const auto &events = std::get<QList<CalendarEvent>>(*m_records);
    QItemSelection days;
    for (const QModelIndex &index : m_proxy->records())
        if (MonthGrid::dayOf(events.at(index.data(RecordRole::Number).toInt())) == day)
            days.select(index, index);
    if (days.isEmpty())
        return;
    m_list->selectionModel()->select(days, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_list->scrollTo(days.first().topLeft());
}

QModelIndexList RecordsMainForm::selectedRows() const
{
    return m_list->selectionModel()->selectedRows();
}

void RecordsMainForm::refresh()
{
    if (!m_records)
        return;
    const QModelIndexList rows = selectedRows();
    m_detail->document()->setDefaultStyleSheet(
        QStringLiteral(".label{color:%1}").arg(palette().color(QPalette::PlaceholderText).name()));
    m_detail->showHtml(rows.isEmpty() ? QString() : rows.first().data(RecordRole::Detail).toString());
    if (m_month && rows.size() == 1)
        m_month->setSelectedDate(MonthGrid::dayOf(
            std::get<QList<CalendarEvent>>(*m_records).at(rows.first().data(RecordRole::Number).toInt())));
    const qsizetype shown = m_class == DataClass::Bookmarks
                                ? countBookmarks(std::get<BookmarkTree>(*m_records))
                                : m_proxy->recordCount();
    m_header->setCount(localNumber(shown));
    setStatus(m_proxy->rowCount() == 0
                  ? textFor("IDS_NOTHING_MATCHES")
                  : textFor("IDS_%1_SELECTED_%2").arg(localNumber(shown), localNumber(rows.size())));
    showState({});
}

void RecordsMainForm::showState(const QString &why)
{
    const qsizetype selected = m_records ? selectedRows().size() : 0;
    const bool exportsAll = m_class == DataClass::Bookmarks || selected == 0;
    setExportState(exportsAll ? textFor("IDS_EXPORT_ALL") : textFor("IDS_EXPORT_RECORDS", selected), why);
    m_save->setEnabled(why.isEmpty());
    m_save->setToolTip(why.isEmpty() ? m_save->text() : why);
    const QString nothing = selected == 0 ? textFor("IDS_WHY_SELECT_RECORDS") : why;
    m_remove->setText(selected == 0 ? textFor("IDS_DELETE") : textFor("IDS_DELETE_RECORDS", selected));
    m_import->setEnabled(why.isEmpty() || m_records);
    m_remove->setEnabled(nothing.isEmpty());
    m_remove->setToolTip(nothing.isEmpty() ? m_remove->text() : nothing);
}

RecordSelection RecordsMainForm::selection() const
{
    const QModelIndexList selected = selectedRows();
    QList<int> rows;
    for (const QModelIndex &row : selected.isEmpty() ? m_proxy->records() : selected)
        rows.append(row.data(RecordRole::Number).toInt());
    std::sort(rows.begin(), rows.end());
    const auto picked = [&](const auto &all) -> RecordSelection {
        using List = std::decay_t<decltype(all)>;
        if constexpr (std::is_same_v<List, BookmarkTree>) {
            return std::shared_ptr<const BookmarkTree>(m_records, &all);
        } else {
            List some;
            for (const int row : std::as_const(rows))
                some.append(all.at(row));
            return some;
        }
    };
    return std::visit(picked, *m_records);
}

void RecordsMainForm::exportSelection()
{
    if (const auto target = chooseExportTarget(m_class, exportAction()->text(), this))
        exportTo(target->format, target->path);
}

bool RecordsMainForm::exportTo(const QString &format, const QString &target)
{
    std::unique_ptr<WorkerThread> worker = makeExportThread(selection(), format, target);
    return runJob(exportAction()->text(), worker, this, target);
}

void RecordsMainForm::saveToDatabase()
{
    const QString suggestion = m_source.backup ? m_source.backup->info().displayName : QString();
    const QString folder = chooseLocalDatabase(suggestion, this);
    if (!folder.isEmpty())
        saveInto(folder);
}

bool RecordsMainForm::saveInto(const QString &folder)
{
    std::unique_ptr<WorkerThread> worker = makeBackupThread(m_class, m_source, folder, m_scope);
    if (!runJob(textFor(classTexts(m_class).saveTitle), worker, this))
        return false;
    emit storeChanged(folder);
    return true;
}

bool RecordsMainForm::takesCards() const
{
    return m_class == DataClass::Contacts && m_source.isLocal();
}

// A folder takes what it holds with it, so bookmarks are all selected when the top level is.
bool RecordsMainForm::isAllSelected() const
{
    const QModelIndexList rows = selectedRows();
    if (!m_filter->text().isEmpty())
        return false;
    if (m_class != DataClass::Bookmarks)
        return rows.size() == m_proxy->recordCount();
    const auto isAtTop = [](const QModelIndex &row) { return !row.parent().isValid(); };
    return std::count_if(rows.begin(), rows.end(), isAtTop) == m_proxy->rowCount();
}

void RecordsMainForm::removeSelection()
{
    const ClassTexts &texts = classTexts(m_class);
    const bool all = isAllSelected();
    QStringList ids;
    for (const QModelIndex &row : selectedRows())
        ids.append(row.data(RecordRole::Identity).toString());
    if (ids.isEmpty() || !askQuestion(textFor(all ? texts.confirmRemoveAll : texts.confirmRemove)))
        return;
    std::unique_ptr<WorkerThread> worker = std::make_unique<RemoveRecordsThread>(
        m_class, m_source.folder, ids, all ? texts.removedAll : texts.removed);
    if (!runJob(textFor("IDS_DELETING"), worker, this))
        return;
    emit storeChanged(m_source.folder);
    reload();
}
