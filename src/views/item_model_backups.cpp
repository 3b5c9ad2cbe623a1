#include "views/item_model_backups.h"

#include "base/texts.h"
#include "views/icons.h"
#include "views/record_roles.h"
#include "work/shown_text.h"

#include <QLocale>

namespace {
QString description(const BackupInfo &backup)
{
    QStringList parts;
    if (!backup.productType.isEmpty())
        parts << backup.productType;
    if (!backup.productVersion.isEmpty())
        parts << textFor("IDS_IOS_%1").arg(backup.productVersion);
    if (backup.backupDate.isValid())
        parts << QLocale::system().toString(backup.backupDate.toLocalTime(), QLocale::ShortFormat);
    if (backup.encrypted)
        parts << textFor("IDS_BK_ENCRYPTED");
    return parts.join(QStringLiteral(" · "));
}
} // namespace

int ItemModelBackups::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_backups.size());
}

QVariant ItemModelBackups::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const BackupInfo &backup = m_backups.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return backup.displayName.left(longestShown);
    case Qt::DecorationRole:
        return listIcon("tree_backup");
    case Qt::ToolTipRole:
        return toolTipOf(backup.displayName + QLatin1Char('\n') + backup.folder);
    case Qt::AccessibleTextRole:
        return backup.displayName + QStringLiteral(", ") + description(backup);
    case DescriptionRole:
        return description(backup);
    case FolderRole:
        return backup.folder;
    default:
        return {};
    }
}

void ItemModelBackups::setBackups(const QList<BackupInfo> &backups)
{
    beginResetModel();
    m_backups = backups;
    endResetModel();
}

void ItemModelBackups::append(const BackupInfo &backup)
{
    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_backups.append(backup);
    endInsertRows();
}

int ItemModelBackups::rowOf(const QString &folder) const
{
    const QString uid = backupUid(folder);
    for (int row = 0; row < rowCount(); ++row) {
        if (backupUid(m_backups.at(row).folder) == uid)
            return row;
    }
    return -1;
}
