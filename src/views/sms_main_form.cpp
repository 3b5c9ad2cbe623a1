#include "views/sms_main_form.h"

#include "base/texts.h"
#include "views/conversation_facts.h"
#include "views/conversation_filter.h"
#include "views/conversation_summary.h"
#include "views/conversation_view.h"
#include "views/date_range_edit.h"
#include "views/item_model_sms.h"
#include "views/layout_memory.h"
#include "views/local_number.h"
#include "views/message_export_dlg.h"
#include "views/notice_bar.h"
#include "views/roomy_delegate.h"
#include "views/state_stack.h"
#include "views/view_header.h"
#include "work/background_job.h"
#include "work/export_messages_thread.h"
#include "work/find_messages_thread.h"
#include "work/load_messages_thread.h"
#include "work/run_job.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QSplitter>
#include <QStackedWidget>
#include <QTreeView>
#include <QVBoxLayout>

#include <unordered_set>

namespace {
constexpr int listWidth = 320;
constexpr int dateWidth = 88;
constexpr int countWidth = 72;

QString conversations(std::size_t count)
{
    return textFor("IDS_CONVERSATION_COUNT", static_cast<qint64>(count));
}
} // namespace

SMSMainForm::SMSMainForm(MessageOrigin origin, QWidget *parent)
    : DataView(parent),
      m_origin(std::move(origin)),
      m_actions(new MessageActions(
          m_origin, [this] { return selection(); }, this)),
      m_model(new ItemModelSms(this)),
      m_proxy(new ConversationFilter(this))
{
    connect(m_actions, &MessageActions::storeChanged, this, &SMSMainForm::storeChanged);
    connect(m_actions, &MessageActions::outdated, this, &SMSMainForm::reload);
    buildWidgets();
    reload();
}

SMSMainForm::~SMSMainForm() = default;

void SMSMainForm::buildWidgets()
{
    m_header = new ViewHeader(textFor("IDS_MESSAGES"));
    m_filter = m_header->addFilter(textFor("IDS_FILTER_CONVERSATIONS"));
    m_range = new DateRangeEdit;
    m_header->addWidget(m_range);
    for (QAction *action : {m_actions->attachmentsAction(), saveAction(), removeAction(), exportAction()})
        if (action)
            m_header->addAction(action);
    m_conversation = new ConversationView;
    buildList();
    m_notices = new NoticeBar;
    m_notices->offerEverything();
    m_summary = new ConversationSummary;
    m_detail = new QStackedWidget;
    m_detail->addWidget(m_summary);
    m_detail->addWidget(m_conversation);
    auto *splitter = new QSplitter;
    splitter->addWidget(m_list);
    splitter->addWidget(m_detail);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({listWidth, listWidth});
    splitter->setChildrenCollapsible(false);
    rememberSplitter(splitter, "messages");
    m_states = new StateStack(splitter);
    m_states->setObjectName(QStringLiteral("viewStates"));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_notices);
    layout->addWidget(m_states, 1);

    connect(m_filter, &QLineEdit::textChanged, this, &SMSMainForm::onFilterChanged);
    connect(m_range, &DateRangeEdit::rangeChanged, this, &SMSMainForm::onFilterChanged);
    connect(m_header, &ViewHeader::filterLeft, m_list, [this] { m_list->setFocus(); });
    connect(m_conversation, &ConversationView::choiceChanged, this, &SMSMainForm::showActions);
    connect(m_states, &StateStack::actionRequested, this, &SMSMainForm::reload);
    connect(m_notices, &NoticeBar::scopeWanted, this, [this](Scope scope) {
        m_scope = scope;
        reload();
    });
}

void SMSMainForm::buildList()
{
    m_proxy->setSourceModel(m_model);
    m_list = new QTreeView;
    m_list->setObjectName(QStringLiteral("listConversations"));
    m_list->setAccessibleName(textFor("IDS_MESSAGES"));
    m_list->setModel(m_proxy);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setItemDelegate(new RoomyDelegate(m_list));
    m_list->setAllColumnsShowFocus(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setIconSize({ItemModelSms::pictureSide, ItemModelSms::pictureSide});
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (QWidget *list :
         {static_cast<QWidget *>(m_list), static_cast<QWidget *>(m_conversation->messageList())})
        for (QAction *action :
             {exportAction(), saveAction(), printAction(), m_actions->attachmentsAction(), removeAction()})
            if (action)
                list->addAction(action);
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(ItemModelSms::LastDate, Qt::DescendingOrder);
    QHeaderView *header = m_list->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(ItemModelSms::Name, QHeaderView::Stretch);
    header->resizeSection(ItemModelSms::LastDate, dateWidth);
    header->resizeSection(ItemModelSms::Count, countWidth);
    rememberColumns(header, "messages");
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &SMSMainForm::refresh);
}

void SMSMainForm::reload()
{
    m_summary->showNothing({});
    m_conversation->clear();
    m_search.reset();
    m_proxy->setFound({});
    m_model->setMessages(nullptr);
    m_messages.reset();
    m_notices->setReport({});
    auto worker = std::make_unique<LoadMessagesThread>(m_origin, m_scope);
    LoadMessagesThread *loading = worker.get();
    m_job = std::make_unique<BackgroundJob>(std::move(worker));
    connect(m_job.get(), &BackgroundJob::progressed, m_states, &StateStack::setProgress);
    connect(m_job.get(), &BackgroundJob::succeeded, this, [this, loading] { onLoaded(*loading); });
    connect(m_job.get(), &BackgroundJob::failed, this, &SMSMainForm::onFailed);
    m_states->showLoading(textFor("IDS_LOADING_MESSAGES"));
    m_header->setToolsEnabled(false);
    m_header->setCount({});
    disableActions(textFor("IDS_WHY_LOADING"));
    setStatus(textFor("IDS_LOADING_MESSAGES"));
    m_job->start();
}

void SMSMainForm::onLoaded(const LoadMessagesThread &worker)
{
    m_messages = worker.messages();
    m_model->setMessages(m_messages);
    const Report report = worker.report();
    m_notices->setReport(report, m_scope);
    if (m_model->rowCount() == 0) {
        showEmpty(report);
        return;
    }
    m_range->setBounds(m_model->bounds());
    m_states->showContent();
    m_header->setToolsEnabled(true);
    onFilterChanged();
    if (m_list->selectionModel()->selectedRows().isEmpty())
        m_list->setCurrentIndex(m_proxy->index(0, 0));
}

// Nothing is said to be all there is while something could not be read.
void SMSMainForm::showEmpty(const Report &report)
{
    if (report.isFailure()) {
        onFailed(problemsOf(report).join(QLatin1Char('\n')));
        return;
    }
    const bool isBackup = m_origin.backup != nullptr;
    const QString none = textFor(isBackup ? "IDS_NO_MESSAGES" : "IDS_NO_MESSAGES_HERE");
    m_states->showEmpty(none, textFor(!m_origin.localDatabase.isEmpty() ? "IDS_EMPTY_LOCAL_HINT"
                                      : isBackup && !m_messages         ? "IDS_NO_MESSAGE_DB_IN_BACKUP"
                                                                        : "IDS_NO_MESSAGES_HINT"));
    disableActions(none);
    setStatus(none);
}

void SMSMainForm::onFailed(const QString &text)
{
    m_states->showFailed(textFor("IDS_MESSAGES_FAILED"), text);
    disableActions(textFor("IDS_MESSAGES_FAILED"));
    setStatus(textFor("IDS_MESSAGES_FAILED"));
}

void SMSMainForm::onFilterChanged()
{
    if (!m_messages)
        return;
    keepSelected([this] {
        m_model->setRange(m_range->range());
        m_proxy->setText(m_filter->text());
    });
    search();
    refresh();
}

// Conversations that are shown before and after a change of the list stay selected.
void SMSMainForm::keepSelected(const std::function<void()> &change)
{
    const std::vector<const _MsgChat *> selected = selectedChats();
    change();
    const std::unordered_set<const _MsgChat *> kept(selected.begin(), selected.end());
    QItemSelection rows;
    for (int row = 0; row < m_proxy->rowCount(); ++row) {
        const QModelIndex index = m_proxy->index(row, 0);
        if (kept.contains(&m_model->chat(m_proxy->mapToSource(index).row())))
            rows.select(index, index);
    }
    m_list->selectionModel()->select(rows, QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

// Names are filtered at once; half a million texts take a moment that nobody should have to wait for.
void SMSMainForm::search()
{
    m_search.reset();
    if (m_proxy->text().isEmpty())
        return;
    const DateRange range = m_range->range();
    auto worker = std::make_unique<FindMessagesThread>(m_messages, m_proxy->text(), range.from, range.to);
    FindMessagesThread *finding = worker.get();
    m_search = std::make_unique<BackgroundJob>(std::move(worker));
    connect(m_search.get(), &BackgroundJob::succeeded, this, [this, finding] { onFound(*finding); });
    m_search->start();
}

void SMSMainForm::onFound(const FindMessagesThread &worker)
{
    keepSelected([&] { m_proxy->setFound(worker.found()); });
    m_shownFound = 0;
    refresh();
}

std::vector<const _MsgChat *> SMSMainForm::selectedChats() const
{
    std::vector<const _MsgChat *> chats;
    const QModelIndexList rows = m_list->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        chats.push_back(&m_model->chat(m_proxy->mapToSource(row).row()));
    return chats;
}

MessageActions::Selection SMSMainForm::selection() const
{
    const std::vector<const _MsgChat *> chats = selectedChats();
    if (chats.size() == 1 && m_conversation->chosenCount() > 0)
        return {m_messages, m_conversation->chosenMessages()};
    std::vector<qint64> ids;
    for (const _MsgChat *chat : chats)
        ids.push_back(chat->rowid);
    if (ids.empty())
        return {m_messages, {}};
    const DateRange range = m_range->range();
    return {m_messages, m_messages->database->select(ids, range.from, range.to)};
}

void SMSMainForm::refresh()
{
    if (!m_messages)
        return;
    const std::vector<const _MsgChat *> chats = selectedChats();
    showDetail(chats);
    showActions();
    showCounts(chats.size());
}

void SMSMainForm::showDetail(const std::vector<const _MsgChat *> &chats)
{
    if (chats.size() == 1) {
        m_conversation->showConversation(*chats.front(), m_range->range(), m_messages);
        showFound(*chats.front());
        m_detail->setCurrentWidget(m_conversation);
        return;
    }
    if (chats.empty())
        m_summary->showNothing(
            textFor(m_proxy->rowCount() == 0 ? "IDS_NOTHING_MATCHES" : "IDS_SELECT_CONVERSATION"));
    else
        m_summary->showConversations(chats, m_range->range(), m_messages);
    m_detail->setCurrentWidget(m_summary);
}

// Once for each find: the user may page away from it.
void SMSMainForm::showFound(const _MsgChat &chat)
{
    const auto found = m_proxy->found().find(&chat);
    if (found == m_proxy->found().end() || found->second == m_shownFound)
        return;
    m_shownFound = found->second;
    m_conversation->showMessage(found->second);
}

QString SMSMainForm::selectedText() const
{
    const std::size_t chosen = m_conversation->chosenCount();
    const std::size_t chats = selectedChats().size();
    if (chats == 1 && chosen > 0)
        return messageCountText(static_cast<qint64>(chosen));
    return chats > 0 ? conversations(chats) : QString();
}

void SMSMainForm::showActions()
{
    if (!m_messages)
        return;
    const QString what = selectedText();
    const QString whyNot = what.isEmpty() ? textFor("IDS_WHY_SELECT_CONVERSATIONS") : QString();
    setExportState(what.isEmpty() ? textFor("IDS_EXPORT") : textFor("IDS_EXPORT_%1").arg(what), whyNot);
    m_actions->setState(what, whyNot);
}

void SMSMainForm::disableActions(const QString &whyNot)
{
    setExportState(textFor("IDS_EXPORT"), whyNot);
    m_actions->setState({}, whyNot);
}

void SMSMainForm::showCounts(std::size_t selected)
{
    const auto shown = static_cast<std::size_t>(m_proxy->rowCount());
    qint64 messages = 0;
    for (std::size_t row = 0; row < shown; ++row)
        messages += m_proxy->index(static_cast<int>(row), ItemModelSms::Count)
                        .data(ItemModelSms::SortRole)
                        .toLongLong();
    m_header->setCount(textFor("IDS_%1_IN_%2").arg(messageCountText(messages), conversations(shown)));
    const bool searching = m_search && m_search->isRunning();
    setStatus(searching    ? textFor("IDS_SEARCHING")
              : shown == 0 ? textFor("IDS_NOTHING_MATCHES")
                           : textFor("IDS_%1_SELECTED_%2")
                                 .arg(conversations(shown), localNumber(static_cast<qint64>(selected))));
}

void SMSMainForm::exportSelection()
{
    MessageExportDlg dialog(exportAction()->text(), this);
    if (dialog.exec() == QDialog::Accepted)
        exportTo(dialog.choice());
}

bool SMSMainForm::exportTo(const MessageExportChoice &choice)
{
    MessageActions::Selection selected = selection();
    if (selected.messages.empty())
        return false;
    auto worker = std::make_unique<ExportMessagesThread>(std::move(selected.messages), selected.owner,
                                                         choice.format, choice.target, selected.owner->files);
    return runJob(textFor("IDS_EXTRACTING_MESSAGES"), worker, this, choice.target);
}
