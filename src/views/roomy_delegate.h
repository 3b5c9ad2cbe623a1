#pragma once

#include <QStyledItemDelegate>

/// Gives the rows of a list room to breathe.
class RoomyDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        constexpr int room = 8;
        const QSize hint = QStyledItemDelegate::sizeHint(option, index);
        return {hint.width(), hint.height() + room};
    }
};
