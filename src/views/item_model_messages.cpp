#include "views/item_model_messages.h"

#include "base/apple_time.h"
#include "base/texts.h"
#include "export/message_text.h"
#include "views/record_roles.h"
#include "work/shown_text.h"

#include <QDateTime>
#include <QLocale>

namespace {
QString headLine(const MessageRef &ref)
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(unixFromApple(ref.message->date));
    const QString date = QLocale::system().toString(time, QLocale::ShortFormat);
    if (ref.message->item_type != 0)
        return date;
    QString sender = textFor("IDS_YOU");
    if (!ref.message->is_from_me)
        sender = ref.message->handle ? ref.message->handle->name()
                 : ref.chat          ? chatName(*ref.chat, Addresses::Without)
                                     : textFor("IDS_UNKNOWN_SENDER");
    return QStringLiteral("%1 · %2").arg(sender.left(longestShown), date);
}
} // namespace

int ItemModelMessages::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ItemModelMessages::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const MessageRef &ref = m_rows.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Qt::DisplayRole:
        return headLine(ref);
    case DescriptionRole:
        return summaryText(*ref.message).left(longestShown);
    case Qt::AccessibleTextRole:
        return QString(headLine(ref) + QStringLiteral(": ") + summaryText(*ref.message));
    case Qt::ToolTipRole:
        return toolTipOf(summaryText(*ref.message));
    default:
        return {};
    }
}

void ItemModelMessages::setMessages(std::vector<MessageRef> messages, std::shared_ptr<const void> owner)
{
    beginResetModel();
    m_rows = std::move(messages);
    m_owner = std::move(owner);
    endResetModel();
}
