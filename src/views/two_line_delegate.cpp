#include "views/two_line_delegate.h"

#include "views/fonts.h"

#include <QApplication>
#include <QPainter>

namespace {
constexpr int margin = 8;
constexpr int lineGap = 2;
} // namespace

TwoLineDelegate::TwoLineDelegate(int secondLineRole, SecondLine look, QObject *parent)
    : QStyledItemDelegate(parent), m_secondLineRole(secondLineRole), m_look(look)
{
}

void TwoLineDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString name = item.text.simplified();
    const QIcon icon = item.icon;
    item.text.clear();
    item.icon = {};
    const QStyle *style = item.widget ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    painter->save();
    QRect area = item.rect.adjusted(margin, margin, -margin, -margin);
    if (!icon.isNull()) {
        const int side = item.decorationSize.width();
        icon.paint(painter, QRect(area.left(), area.top(), side, area.height()), Qt::AlignCenter,
                   item.state.testFlag(QStyle::State_Selected) ? QIcon::Selected : QIcon::Normal);
        area.setLeft(area.left() + side + margin);
    }
    const bool selected = item.state.testFlag(QStyle::State_Selected);
    painter->setPen(item.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter->setFont(strongFont(item.font));
    const QFontMetrics strong(painter->font());
    painter->drawText(area, Qt::AlignLeft | Qt::AlignTop,
                      strong.elidedText(name, Qt::ElideMiddle, area.width()));
    area.setTop(area.top() + strong.height() + lineGap);
    if (!selected && m_look == SecondLine::Quiet)
        painter->setPen(item.palette.color(QPalette::PlaceholderText));
    painter->setFont(item.font);
    painter->drawText(area, Qt::AlignLeft | Qt::AlignTop,
                      item.fontMetrics.elidedText(index.data(m_secondLineRole).toString().simplified(),
                                                  Qt::ElideMiddle, area.width()));
    painter->restore();
}

QSize TwoLineDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const QFontMetrics strong(strongFont(option.font));
    return {0, strong.height() + lineGap + option.fontMetrics.height() + 2 * margin};
}
