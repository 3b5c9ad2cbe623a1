#include "views/conversation_summary.h"

#include "base/texts.h"
#include "views/conversation_facts.h"
#include "views/fonts.h"
#include "views/item_model_messages.h"
#include "views/state_stack.h"
#include "views/two_line_delegate.h"
#include "work/elided_label.h"
#include "work/shown_text.h"

#include <QLabel>
#include <QListView>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr std::size_t newestShown = 200;

struct Gathered
{
    std::vector<MessageRef> messages; // newest first, at most `newestShown` of them
    qint64 count = 0;
    DateRange days;
    QStringList people;
};

bool isNewer(const MessageRef &a, const MessageRef &b)
{
    return a.message->date != b.message->date ? a.message->date > b.message->date
                                              : a.message->rowid > b.message->rowid;
}

// Cuts back to the newest now and then, so that a conversation of a million messages costs no memory here.
void keepNewest(std::vector<MessageRef> &messages)
{
    const std::size_t kept = std::min(newestShown, messages.size());
    std::partial_sort(messages.begin(), messages.begin() + static_cast<std::ptrdiff_t>(kept), messages.end(),
                      isNewer);
    messages.resize(kept);
}

void gatherMessages(const _MsgChat &chat, const DateRange &range, Gathered &gathered)
{
    for (const _MsgMessage *message : chat.messages) {
        if (!range.contains(message->date))
            continue;
        const bool first = gathered.count++ == 0;
        gathered.days.from =
            first ? message->date : std::min<std::int64_t>(gathered.days.from, message->date);
        gathered.days.to = first ? message->date : std::max<std::int64_t>(gathered.days.to, message->date);
        gathered.messages.push_back({&chat, message});
        if (gathered.messages.size() > 20 * newestShown)
            keepNewest(gathered.messages);
    }
}

Gathered gather(const std::vector<const _MsgChat *> &chats, const DateRange &range)
{
    Gathered gathered;
    for (const _MsgChat *chat : chats) {
        gatherMessages(*chat, range, gathered);
        for (const _MsgHandle *handle : chat->handles)
            gathered.people << handle->nameWithAddress();
    }
    keepNewest(gathered.messages);
    gathered.people.removeDuplicates();
    return gathered;
}

QString factsText(const Gathered &gathered)
{
    const QString count = messageCountText(gathered.count);
    return gathered.count == 0 ? count : count + QLatin1Char('\n') + daysText(gathered.days);
}

QLabel *plainLabel(const char *name)
{
    auto *label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}
} // namespace

ConversationSummary::ConversationSummary(QWidget *parent)
    : QWidget(parent),
      m_states(new StateStack(new QWidget)),
      m_title(new ElidedLabel),
      m_people(plainLabel("lbPeople")),
      m_facts(plainLabel("lbFacts")),
      m_newest(new QLabel(textFor("IDS_NEWEST_MESSAGES"))),
      m_list(new QListView),
      m_model(new ItemModelMessages(this))
{
    m_title->setObjectName(QStringLiteral("lbConversations"));
    m_title->setFont(titleFont(m_title->font()));
    m_people->setForegroundRole(QPalette::PlaceholderText);
    m_newest->setFont(strongFont(m_newest->font()));
    m_newest->setBuddy(m_list);
    m_list->setModel(m_model);
    m_list->setItemDelegate(
        new TwoLineDelegate(ItemModelMessages::DescriptionRole, SecondLine::Plain, m_list));
    m_list->setUniformItemSizes(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setAccessibleName(textFor("IDS_NEWEST_MESSAGES"));

    auto *around = new QVBoxLayout(this);
    around->setContentsMargins(0, 0, 0, 0);
    around->addWidget(m_states);
    auto *layout = new QVBoxLayout(m_states->content());
    layout->setContentsMargins(16, 8, 16, 0);
    layout->setSpacing(8);
    layout->addWidget(m_title);
    layout->addWidget(m_people);
    layout->addWidget(m_facts);
    layout->addSpacing(8);
    layout->addWidget(m_newest);
    layout->addWidget(m_list, 1);
}

void ConversationSummary::showNothing(const QString &text)
{
    m_model->setMessages({}, nullptr);
    m_states->showEmpty(text, {});
}

void ConversationSummary::showConversations(const std::vector<const _MsgChat *> &chats,
                                            const DateRange &range, std::shared_ptr<const void> owner)
{
    Gathered gathered = gather(chats, range);
    m_title->setText(chats.size() == 1
                         ? chatName(*chats.front(), Addresses::Without)
                         : textFor("IDS_CONVERSATION_COUNT", static_cast<qint64>(chats.size())));
    m_people->setText(breakable(peopleText(gathered.people)));
    m_people->setVisible(!gathered.people.isEmpty());
    m_facts->setText(factsText(gathered));
    m_model->setMessages(std::move(gathered.messages), std::move(owner));
    m_list->scrollToTop();
    m_states->showContent();
}
