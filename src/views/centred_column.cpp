#include "views/centred_column.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <QWidget>

QVBoxLayout *centredColumn(QWidget *page)
{
    constexpr int columnWidth = 420;
    auto *column = new QWidget;
    column->setMaximumWidth(columnWidth);
    auto *across = new QHBoxLayout(page);
    across->setContentsMargins(24, 24, 24, 24);
    across->addStretch(1);
    across->addWidget(column, columnWidth);
    across->addStretch(1);
    auto *layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addStretch(2);
    return layout;
}
