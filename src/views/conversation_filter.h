#pragma once

#include <QSortFilterProxyModel>

/// Sorts conversations by their raw values and keeps those whose name or address holds a text.
class ConversationFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit ConversationFilter(QObject *parent = nullptr);

    void setText(const QString &text);

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    QString m_text;
};
