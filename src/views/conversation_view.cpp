#include "views/conversation_view.h"

#include "base/texts.h"
#include "views/bubble_view_mgr.h"
#include "views/conversation_facts.h"
#include "views/fonts.h"
#include "views/item_model_messages.h"
#include "views/two_line_delegate.h"
#include "work/elided_label.h"

#include <QAction>
#include <QButtonGroup>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QLocale>
#include <QStackedWidget>
#include <QToolButton>
#include <QWebEngineView>

#include <algorithm>

namespace {
bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
}

QWebEngineView *makeWebView()
{
    auto *view = new QWebEngineView;
    view->setObjectName(QStringLiteral("webConversation"));
    view->setAccessibleName(textFor("IDS_ACC_CONVERSATION"));
    view->setAcceptDrops(false);
    view->setContextMenuPolicy(Qt::ActionsContextMenu);
    return view;
}
} // namespace

ConversationView::ConversationView(QWidget *parent)
    : QWidget(parent),
      m_model(new ItemModelMessages(this)),
      m_title(new ElidedLabel),
      m_facts(new ElidedLabel),
      m_looks(new QButtonGroup(this)),
      m_stack(new QStackedWidget)
{
    buildList();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(buildTop());
    layout->addWidget(m_stack, 1);
    layout->addWidget(buildPageBar());
    m_pageBar->hide();
    connect(m_looks, &QButtonGroup::idClicked, this, &ConversationView::showLook);
}

ConversationView::~ConversationView() = default;

QWidget *ConversationView::buildTop()
{
    m_title->setObjectName(QStringLiteral("lbConversation"));
    m_title->setFont(titleFont(m_title->font()));
    m_facts->setObjectName(QStringLiteral("lbFacts"));
    m_facts->setForegroundRole(QPalette::PlaceholderText);
    auto *looks = new QHBoxLayout;
    looks->setSpacing(0);
    looks->addWidget(addLook(Bubbles, "IDS_LOOK_BUBBLES"));
    looks->addWidget(addLook(List, "IDS_LOOK_LIST"));
    m_looks->button(Bubbles)->setChecked(true);
    auto *words = new QVBoxLayout;
    words->setSpacing(4);
    words->addWidget(m_title);
    words->addWidget(m_facts);
    auto *top = new QWidget;
    auto *layout = new QHBoxLayout(top);
    layout->setContentsMargins(16, 8, 16, 8);
    layout->setSpacing(8);
    layout->addLayout(words, 1);
    layout->addLayout(looks);
    return top;
}

QToolButton *ConversationView::addLook(Look look, const char *text)
{
    auto *button = new QToolButton;
    button->setObjectName(QLatin1String(text));
    button->setText(textFor(text));
    button->setToolTip(textFor(look == List ? "IDS_LOOK_LIST_HINT" : "IDS_LOOK_BUBBLES_HINT"));
    button->setCheckable(true);
    button->setFocusPolicy(Qt::StrongFocus);
    m_looks->addButton(button, look);
    return button;
}

QToolButton *ConversationView::addPageButton(QWidget *bar, const char *text, void (BubbleViewMgr::*turn)())
{
    auto *button = new QToolButton;
    button->setObjectName(QLatin1String(text));
    button->setText(textFor(text));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QToolButton::clicked, this, [this, turn] { (bubbles().*turn)(); });
    bar->layout()->addWidget(button);
    return button;
}

QWidget *ConversationView::buildPageBar()
{
    m_pageBar = new QWidget;
    auto *layout = new QHBoxLayout(m_pageBar);
    layout->setContentsMargins(16, 4, 16, 4);
    layout->setSpacing(8);
    layout->addStretch();
    m_back = {addPageButton(m_pageBar, "IDS_FIRST_PAGE", &BubbleViewMgr::firstPage),
              addPageButton(m_pageBar, "IDS_PAGE_BACK", &BubbleViewMgr::prePage)};
    m_place = new QLabel;
    m_place->setObjectName(QStringLiteral("lbPage"));
    layout->addWidget(m_place);
    m_forward = {addPageButton(m_pageBar, "IDS_PAGE_ON", &BubbleViewMgr::nextPage),
                 addPageButton(m_pageBar, "IDS_LAST_PAGE", &BubbleViewMgr::lastPage)};
    layout->addStretch();
    return m_pageBar;
}

void ConversationView::buildList()
{
    m_list = new QListView;
    m_list->setObjectName(QStringLiteral("listMessages"));
    m_list->setAccessibleName(textFor("IDS_MESSAGES"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(
        new TwoLineDelegate(ItemModelMessages::DescriptionRole, SecondLine::Plain, m_list));
    m_list->setUniformItemSizes(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_stack->addWidget(m_list);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ConversationView::choiceChanged);
    connect(m_list, &QListView::activated, this, [this](const QModelIndex &index) {
        m_looks->button(Bubbles)->setChecked(true);
        showLook();
        showMessage(m_model->message(index.row()).message->rowid);
    });
}

// The web engine starts processes of its own: not before there is something to show.
BubbleViewMgr &ConversationView::bubbles()
{
    if (!m_bubbles) {
        QWebEngineView *view = makeWebView();
        m_bubbles = new BubbleViewMgr(view, this);
        m_bubbles->setDark(isDark(palette()));
        view->addAction(view->pageAction(QWebEnginePage::Copy));
        view->addAction(view->pageAction(QWebEnginePage::SelectAll));
        m_stack->addWidget(view);
        connect(m_bubbles, &BubbleViewMgr::pageChanged, this, &ConversationView::showPlace);
    }
    return *m_bubbles;
}

bool ConversationView::isList() const
{
    return m_looks->checkedId() == List;
}

void ConversationView::showConversation(const _MsgChat &chat, const DateRange &range, LoadedMessagesPtr owner)
{
    if (m_owner == owner && m_chat == &chat && m_range == range)
        return;
    m_owner = std::move(owner);
    m_chat = &chat;
    m_range = range;
    m_messages = m_owner->database->select({chat.rowid}, range.from, range.to);
    m_bubblesCurrent = false;
    m_model->setMessages(m_messages, m_owner);
    setFacts(chat);
    showLook();
}

void ConversationView::clear()
{
    m_owner.reset();
    m_chat = nullptr;
    m_messages.clear();
    m_model->setMessages({}, nullptr);
    if (m_bubbles)
        m_bubbles->setMessages({}, nullptr);
    m_bubblesCurrent = false;
}

void ConversationView::setFacts(const _MsgChat &chat)
{
    m_title->setText(chatName(chat, Addresses::Without));
    QStringList facts;
    QStringList people;
    for (const _MsgHandle *handle : chat.handles)
        people << handle->nameWithAddress();
    if (!people.isEmpty())
        facts << peopleText(people);
    facts << messageCountText(static_cast<qint64>(m_messages.size()));
    if (!m_messages.empty()) {
        const auto [first, last] = std::minmax_element(
            m_messages.begin(), m_messages.end(),
            [](const MessageRef &a, const MessageRef &b) { return a.message->date < b.message->date; });
        facts << daysText({first->message->date, last->message->date});
    }
    m_facts->setText(facts.join(QStringLiteral(" · ")));
}

void ConversationView::showLook()
{
    if (isList()) {
        m_stack->setCurrentWidget(m_list);
        m_pageBar->hide();
    } else if (m_owner) {
        if (!m_bubblesCurrent)
            bubbles().setMessages(m_messages, m_owner);
        m_bubblesCurrent = true;
        m_stack->setCurrentIndex(1);
        showPlace();
    }
    emit choiceChanged();
}

void ConversationView::showPlace()
{
    const int page = bubbles().page();
    const int count = bubbles().pageCount();
    m_place->setText(textFor("IDS_PAGE_%1_OF_%2")
                         .arg(QLocale::system().toString(page), QLocale::system().toString(count)));
    for (QToolButton *button : m_back)
        button->setEnabled(page > 1);
    for (QToolButton *button : m_forward)
        button->setEnabled(page < count);
    m_pageBar->setVisible(count > 1 && !isList());
}

void ConversationView::showMessage(qint64 rowid)
{
    if (!isList()) {
        bubbles().showMessage(rowid);
        return;
    }
    for (int row = 0; row < m_model->rowCount(); ++row)
        if (m_model->message(row).message->rowid == rowid)
            m_list->scrollTo(m_model->index(row), QAbstractItemView::PositionAtCenter);
}

std::size_t ConversationView::chosenCount() const
{
    std::size_t count = 0;
    if (isList() && m_owner)
        for (const QItemSelectionRange &range : m_list->selectionModel()->selection())
            count += static_cast<std::size_t>(range.height());
    return count;
}

std::vector<MessageRef> ConversationView::chosenMessages() const
{
    std::vector<MessageRef> chosen;
    if (chosenCount() == 0)
        return chosen;
    for (int row = 0; row < m_model->rowCount(); ++row)
        if (m_list->selectionModel()->isRowSelected(row))
            chosen.push_back(m_model->message(row));
    return chosen;
}

void ConversationView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_bubbles)
        m_bubbles->setDark(isDark(palette()));
}
