#include "views/item_model_sms.h"

#include "base/apple_time.h"
#include "base/texts.h"
#include "views/face_picture.h"
#include "views/record_roles.h"
#include "work/shown_text.h"

#include <QDateTime>
#include <QGuiApplication>
#include <QLocale>

#include <algorithm>

namespace {
QString shortDate(qint64 appleSeconds)
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(unixFromApple(appleSeconds));
    return QLocale::system().toString(time.date(), QLocale::ShortFormat);
}
} // namespace

int ItemModelSms::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ItemModelSms::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

QVariant ItemModelSms::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = m_rows.at(static_cast<std::size_t>(index.row()));
    const bool isName = index.column() == Name;
    switch (role) {
    case Qt::DisplayRole:
        return isName                       ? row.name.left(longestShown).simplified()
               : index.column() == LastDate ? shortDate(row.last)
                                            : QLocale::system().toString(row.messages);
    case Qt::DecorationRole:
        return isName ? QVariant(picture(*row.chat)) : QVariant();
    case SortRole:
        return isName ? QVariant(row.name) : QVariant(index.column() == LastDate ? row.last : row.messages);
    case SearchRole:
        return QString(row.name + QLatin1Char('\n') + chatName(*row.chat, Addresses::With));
    case Qt::ToolTipRole:
        return toolTipOf(chatName(*row.chat, Addresses::With));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((isName ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    default:
        return {};
    }
}

// Drawn when a row is first on the screen, and kept.
QPixmap ItemModelSms::picture(const _MsgChat &chat) const
{
    auto known = m_pictures.constFind(&chat);
    if (known == m_pictures.constEnd())
        known = m_pictures.insert(&chat, facePicture(chat, pictureSide, qGuiApp->devicePixelRatio()));
    return *known;
}

QVariant ItemModelSms::headerData(int section, Qt::Orientation orientation, int role) const
{
    static constexpr const char *titles[] = {"IDS_COL_CONVERSATION", "IDS_COL_LAST", "IDS_COL_MESSAGES"};
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return textFor(titles[section]);
    if (role == Qt::TextAlignmentRole && section != Name)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

void ItemModelSms::setMessages(LoadedMessagesPtr messages)
{
    beginResetModel();
    m_messages = std::move(messages);
    m_pictures.clear();
    m_range = {};
    fill();
    m_bounds = {};
    for (const Row &row : m_rows) {
        const auto [first, last] =
            std::minmax_element(row.chat->messages.begin(), row.chat->messages.end(),
                                [](const _MsgMessage *a, const _MsgMessage *b) { return a->date < b->date; });
        m_bounds.from = m_bounds.from == INT64_MIN ? (*first)->date
                                                   : std::min<std::int64_t>(m_bounds.from, (*first)->date);
        m_bounds.to =
            m_bounds.to == INT64_MAX ? (*last)->date : std::max<std::int64_t>(m_bounds.to, (*last)->date);
    }
    endResetModel();
}

void ItemModelSms::setRange(const DateRange &range)
{
    if (range == m_range)
        return;
    beginResetModel();
    m_range = range;
    fill();
    endResetModel();
}

ItemModelSms::Row ItemModelSms::makeRow(const _MsgChat &chat, const DateRange &range)
{
    Row row;
    row.chat = &chat;
    for (const _MsgMessage *message : chat.messages) {
        if (!range.contains(message->date))
            continue;
        row.last = row.messages == 0 ? message->date : std::max<qint64>(row.last, message->date);
        ++row.messages;
    }
    if (row.messages > 0)
        row.name = chatName(chat, Addresses::Without);
    return row;
}

void ItemModelSms::fill()
{
    m_rows.clear();
    if (!m_messages)
        return;
    for (const _MsgChat *chat : m_messages->database->conversations()) {
        Row row = makeRow(*chat, m_range);
        if (row.messages > 0)
            m_rows.push_back(std::move(row));
    }
}
