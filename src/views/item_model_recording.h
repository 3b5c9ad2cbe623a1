#pragma once

#include "personal/media_names.h"
#include "views/abs_sound_model.h"
#include "work/open_backup.h"

/// The voice recordings of a backup.
class ItemModelRecording : public AbsSoundModel
{
    Q_OBJECT

public:
    ItemModelRecording(OpenBackupPtr backup, QList<RecordingItem> items, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    FileCatalogue::Index file(int row) const override { return m_items.at(row).file; }
    QString exportedName(int row) const override;
    QString description(int row) const override { return describe(m_items.at(row)); }

protected:
    QString title(int row) const override;
    QDateTime date(int row) const override { return m_items.at(row).date; }
    int durationSeconds(int row) const override { return m_items.at(row).duration; }
    QString toolTip(int row) const override;
    const char *titleOfTitles() const override { return "IDS_COL_FILE"; }

private:
    OpenBackupPtr m_backup;
    QList<RecordingItem> m_items;
};
