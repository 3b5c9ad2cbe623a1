#pragma once

#include "messages/msg_records.h"

#include <QAbstractListModel>

#include <memory>

/// Messages as a plain list: who and when, and what was said as DescriptionRole. Keeps their owner alive.
class ItemModelMessages : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { DescriptionRole = Qt::UserRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    void setMessages(std::vector<MessageRef> messages, std::shared_ptr<const void> owner);
    const MessageRef &message(int row) const { return m_rows.at(static_cast<std::size_t>(row)); }

private:
    std::vector<MessageRef> m_rows;
    std::shared_ptr<const void> m_owner;
};
