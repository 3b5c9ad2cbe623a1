#pragma once

#include "work/find_messages_thread.h"

#include <QSortFilterProxyModel>

/// Sorts conversations by their raw values, the messages of none always last, and keeps those whose name or
/// address holds a text, and those that somebody else found it in.
class ConversationFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit ConversationFilter(QObject *parent = nullptr);

    void setText(const QString &text);
    const QString &text() const { return m_text; }
    /// Conversations that say the text.
    void setFound(FoundMessages found);
    const FoundMessages &found() const { return m_found; }

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    QString m_text;
    FoundMessages m_found;
};
