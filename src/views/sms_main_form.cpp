#include "views/sms_main_form.h"

#include "base/texts.h"
#include "views/conversation_filter.h"
#include "views/conversation_summary.h"
#include "views/conversation_view.h"
#include "views/date_range_edit.h"
#include "views/item_model_sms.h"
#include "views/message_export_dlg.h"
#include "views/roomy_delegate.h"
#include "views/state_stack.h"
#include "views/view_header.h"
#include "work/background_job.h"
#include "work/export_messages_thread.h"
#include "work/load_messages_thread.h"
#include "work/run_job.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QLocale>
#include <QSplitter>
#include <QStackedWidget>
#include <QTreeView>
#include <QVBoxLayout>

namespace {
constexpr int listWidth = 320;
constexpr int dateWidth = 88;
constexpr int countWidth = 72;

QString number(std::size_t value)
{
    return QLocale::system().toString(static_cast<qlonglong>(value));
}

QString conversations(std::size_t count)
{
    return textFor(count == 1 ? "IDS_ONE_CONVERSATION" : "IDS_%1_CONVERSATIONS").arg(number(count));
}

QString exportText(std::size_t count)
{
    return count == 0   ? textFor("IDS_EXPORT")
           : count == 1 ? textFor("IDS_EXPORT_ONE_CONVERSATION").arg(number(count))
                        : textFor("IDS_EXPORT_%1_CONVERSATIONS").arg(number(count));
}
} // namespace

SMSMainForm::SMSMainForm(MessageOrigin origin, QWidget *parent)
    : DataView(parent),
      m_origin(std::move(origin)),
      m_model(new ItemModelSms(this)),
      m_proxy(new ConversationFilter(this))
{
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
    m_header->addAction(exportAction());
    buildList();
    m_summary = new ConversationSummary;
    m_conversation = new ConversationView;
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
    m_states = new StateStack(splitter);
    m_states->setObjectName(QStringLiteral("viewStates"));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_states, 1);

    connect(m_filter, &QLineEdit::textChanged, this, &SMSMainForm::onFilterChanged);
    connect(m_range, &DateRangeEdit::rangeChanged, this, &SMSMainForm::onFilterChanged);
    connect(m_header, &ViewHeader::filterLeft, m_list, [this] { m_list->setFocus(); });
    connect(m_states, &StateStack::actionRequested, this, &SMSMainForm::reload);
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
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_list->QWidget::addAction(exportAction());
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(ItemModelSms::LastDate, Qt::DescendingOrder);
    QHeaderView *header = m_list->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(ItemModelSms::Name, QHeaderView::Stretch);
    header->resizeSection(ItemModelSms::LastDate, dateWidth);
    header->resizeSection(ItemModelSms::Count, countWidth);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &SMSMainForm::refresh);
}

void SMSMainForm::reload()
{
    m_summary->showNothing({});
    m_conversation->clear();
    m_model->setMessages(nullptr);
    m_messages.reset();
    auto worker = std::make_unique<LoadMessagesThread>(m_origin);
    LoadMessagesThread *loading = worker.get();
    m_job = std::make_unique<BackgroundJob>(std::move(worker));
    connect(m_job.get(), &BackgroundJob::progressed, m_states, &StateStack::setProgress);
    connect(m_job.get(), &BackgroundJob::succeeded, this, [this, loading] { onLoaded(*loading); });
    connect(m_job.get(), &BackgroundJob::failed, this, &SMSMainForm::onFailed);
    m_states->showLoading(textFor("IDS_LOADING_MESSAGES"));
    m_header->setToolsEnabled(false);
    m_header->setCount({});
    setExportState(exportText(0), textFor("IDS_WHY_LOADING"));
    setStatus(textFor("IDS_LOADING_MESSAGES"));
    m_job->start();
}

void SMSMainForm::onLoaded(const LoadMessagesThread &worker)
{
    m_messages = worker.messages();
    m_model->setMessages(m_messages);
    if (m_model->rowCount() == 0) {
        m_states->showEmpty(textFor("IDS_NO_MESSAGES"),
                            textFor(m_messages ? "IDS_NO_MESSAGES_HINT" : "IDS_NO_MESSAGE_DB_IN_BACKUP"));
        setExportState(exportText(0), textFor("IDS_NO_MESSAGES"));
        setStatus(textFor("IDS_NO_MESSAGES"));
        return;
    }
    m_range->setBounds(m_model->bounds());
    m_states->showContent();
    m_header->setToolsEnabled(true);
    onFilterChanged();
    if (m_list->selectionModel()->selectedRows().isEmpty())
        m_list->setCurrentIndex(m_proxy->index(0, 0));
}

void SMSMainForm::onFailed(const QString &text)
{
    m_states->showFailed(textFor("IDS_MESSAGES_FAILED"), text);
    setExportState(exportText(0), textFor("IDS_MESSAGES_FAILED"));
    setStatus(textFor("IDS_MESSAGES_FAILED"));
}

void SMSMainForm::onFilterChanged()
{
    if (!m_messages)
        return;
    const std::vector<const _MsgChat *> selected = selectedChats();
    m_model->setRange(m_range->range());
    m_proxy->setText(m_filter->text());
    for (int row = 0; row < m_proxy->rowCount(); ++row) {
        const QModelIndex index = m_proxy->index(row, 0);
        const _MsgChat *chat = &m_model->chat(m_proxy->mapToSource(index).row());
        if (std::find(selected.begin(), selected.end(), chat) != selected.end())
            m_list->selectionModel()->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
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

void SMSMainForm::refresh()
{
    if (!m_messages)
        return;
    const std::vector<const _MsgChat *> chats = selectedChats();
    if (chats.size() == 1)
        m_conversation->showConversation(*chats.front(), m_range->range(), m_messages);
    else if (chats.empty())
        m_summary->showNothing(
            textFor(m_proxy->rowCount() == 0 ? "IDS_NOTHING_MATCHES" : "IDS_SELECT_CONVERSATION"));
    else
        m_summary->showConversations(chats, m_range->range(), m_messages);
    m_detail->setCurrentWidget(chats.size() == 1 ? static_cast<QWidget *>(m_conversation) : m_summary);
    setExportState(exportText(chats.size()),
                   chats.empty() ? textFor("IDS_WHY_SELECT_CONVERSATIONS") : QString());
    showCounts(chats.size());
}

void SMSMainForm::showCounts(std::size_t selected)
{
    const auto shown = static_cast<std::size_t>(m_proxy->rowCount());
    m_header->setCount(conversations(shown));
    setStatus(shown == 0 ? textFor("IDS_NOTHING_MATCHES")
                         : textFor("IDS_%1_SELECTED_%2").arg(conversations(shown), number(selected)));
}

void SMSMainForm::exportSelection()
{
    MessageExportDlg dialog(exportText(selectedChats().size()), this);
    if (dialog.exec() == QDialog::Accepted)
        exportTo(dialog.choice());
}

bool SMSMainForm::exportTo(const MessageExportChoice &choice)
{
    std::vector<qint64> ids;
    for (const _MsgChat *chat : selectedChats())
        ids.push_back(chat->rowid);
    if (ids.empty())
        return false;
    const DateRange range = m_range->range();
    auto worker =
        std::make_unique<ExportMessagesThread>(m_messages->database->select(ids, range.from, range.to),
                                               m_messages, choice.format, choice.target, m_messages->files);
    return runJob(textFor("IDS_EXTRACTING_MESSAGES"), worker, this, choice.target);
}
