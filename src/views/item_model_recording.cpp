#include "views/item_model_recording.h"

#include "base/texts.h"

ItemModelRecording::ItemModelRecording(OpenBackupPtr backup, QList<RecordingItem> items, QObject *parent)
    : AbsSoundModel(parent), m_backup(std::move(backup)), m_items(std::move(items))
{
}

int ItemModelRecording::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QString ItemModelRecording::exportedName(int row) const
{
    return exportName(m_items.at(row), m_backup->manifest().catalogue());
}

QString ItemModelRecording::title(int row) const
{
    const FileCatalogue::Index file = m_items.at(row).file;
    if (file == FileCatalogue::none)
        return textFor("IDS_NOT_IN_BACKUP");
    const QByteArrayView path = m_backup->manifest().catalogue().relativePath(file);
    return QString::fromUtf8(path.sliced(path.lastIndexOf('/') + 1));
}

QString ItemModelRecording::toolTip(int row) const
{
    return m_items.at(row).file == FileCatalogue::none ? textFor("IDS_NO_RECORDING_FILE") : title(row);
}
