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
    if (m_text.isEmpty())
        m_found.clear();
    invalidateFilter();
}

void ConversationFilter::setFound(FoundMessages found)
{
    m_found = std::move(found);
    invalidateFilter();
}

bool ConversationFilter::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    if (m_text.isEmpty())
        return true;
    const auto *model = static_cast<const ItemModelSms *>(sourceModel());
    return m_found.contains(&model->chat(row)) || model->index(row, ItemModelSms::Name, parent)
                                                      .data(ItemModelSms::SearchRole)
                                                      .toString()
                                                      .contains(m_text, Qt::CaseInsensitive);
}

bool ConversationFilter::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const auto *model = static_cast<const ItemModelSms *>(sourceModel());
    const bool leftIsNone = model->chat(left.row()).isNone();
    if (leftIsNone != model->chat(right.row()).isNone())
        return leftIsNone == (sortOrder() == Qt::DescendingOrder);
    return QSortFilterProxyModel::lessThan(left, right);
}
