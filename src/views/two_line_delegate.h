#pragma once

#include <QStyledItemDelegate>

enum class SecondLine { Quiet, Plain };

/// Draws an item as two lines, the display text semi-bold above another, each shortened in the middle.
class TwoLineDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// `secondLineRole` gives the text of the lower line.
    TwoLineDelegate(int secondLineRole, SecondLine look, QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    int m_secondLineRole;
    SecondLine m_look;
};
