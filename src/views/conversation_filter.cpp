#include "views/conversation_filter.h"

#include "views/item_model_sms.h"

ConversationFilter::ConversationFilter(QObject *parent) : QSortFilterProxyModel(parent)
{
    setSortRole(ItemModelSms::SortRole);
    setSortCaseSensitivity(Qt::CaseInsensitive);
    setSortLocaleAware(true);
}

void ConversationFilter::setText(const QString &text)
{
    m_text = text.trimmed();
    invalidateFilter();
}

bool ConversationFilter::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    return m_text.isEmpty() || sourceModel()
                                   ->index(row, ItemModelSms::Name, parent)
                                   .data(ItemModelSms::SearchRole)
                                   .toString()
                                   .contains(m_text, Qt::CaseInsensitive);
}
