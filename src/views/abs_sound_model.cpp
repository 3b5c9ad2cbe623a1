#include "views/abs_sound_model.h"

#include "base/texts.h"
#include "views/record_roles.h"
#include "views/record_table.h"
#include "work/shown_text.h"

#include <QGuiApplication>
#include <QLocale>
#include <QPalette>

int AbsSoundModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString AbsSoundModel::text(const QModelIndex &index) const
{
    switch (index.column()) {
    case Title:
        return title(index.row()).simplified();
    case Date:
        return QLocale::system().toString(date(index.row()).toLocalTime(), QLocale::ShortFormat);
    default:
        return durationText(durationSeconds(index.row()));
    }
}

QVariant AbsSoundModel::sortKey(const QModelIndex &index) const
{
    switch (index.column()) {
    case Title:
        return title(index.row()).toCaseFolded();
    case Date:
        return date(index.row());
    default:
        return durationSeconds(index.row());
    }
}

QVariant AbsSoundModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return text(index).left(longestShown);
    case Qt::ToolTipRole:
        return toolTipOf(toolTip(index.row()));
    case Qt::ForegroundRole:
        return file(index.row()) == FileCatalogue::none
                   ? QVariant(QGuiApplication::palette().color(QPalette::PlaceholderText))
                   : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((index.column() == Title ? Qt::AlignLeft : Qt::AlignRight) |
                                   Qt::AlignVCenter);
    case RecordRole::Sort:
        return sortKey(index);
    case RecordRole::Search:
        return QString(toolTip(index.row()) + QLatin1Char('\n') + text(index.siblingAtColumn(Title)) +
                       QLatin1Char('\n') + text(index.siblingAtColumn(Date)));
    case RecordRole::Number:
        return index.row();
    default:
        return {};
    }
}

QVariant AbsSoundModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return textFor(section == Title  ? titleOfTitles()
                       : section == Date ? "IDS_COL_DATE"
                                         : "IDS_COL_DURATION");
    if (role == Qt::TextAlignmentRole && section != Title)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}
