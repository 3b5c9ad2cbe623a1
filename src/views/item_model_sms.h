#pragma once

#include "views/date_range_edit.h"
#include "work/loaded_messages.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QPixmap>

/// The conversations of a message source that have messages within a stretch of time, last the messages of no
/// conversation. Keeps the source alive.
class ItemModelSms : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, LastDate, Count, ColumnCount };
    /// SortRole gives the raw value of a cell; SearchRole the texts that a filter looks in.
    enum Role { SortRole = Qt::UserRole, SearchRole };

    /// How large the pictures of conversations are.
    static constexpr int pictureSide = 32;

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void setMessages(LoadedMessagesPtr messages);
    void setRange(const DateRange &range);

    const _MsgChat &chat(int row) const { return *m_rows.at(static_cast<std::size_t>(row)).chat; }
    qint64 messageCount(int row) const { return m_rows.at(static_cast<std::size_t>(row)).messages; }
    /// First and last message of all conversations, whatever the range. All of time when there are none.
    DateRange bounds() const { return m_bounds; }

private:
    struct Row
    {
        const _MsgChat *chat = nullptr;
        QString name;
        qint64 messages = 0;
        qint64 last = 0; // Apple absolute seconds
    };

    QPixmap picture(const _MsgChat &chat) const;
    static Row makeRow(const _MsgChat &chat, const DateRange &range);
    void fill();

    LoadedMessagesPtr m_messages;
    DateRange m_range;
    DateRange m_bounds;
    std::vector<Row> m_rows;
    mutable QHash<const _MsgChat *, QPixmap> m_pictures;
};
