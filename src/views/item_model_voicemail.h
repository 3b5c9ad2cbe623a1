#pragma once

#include "personal/media_names.h"
#include "views/abs_sound_model.h"
#include "work/load_sounds_thread.h"

/// The voicemail of a backup, with the names of those who called where the address book has them.
class ItemModelVoicemail : public AbsSoundModel
{
    Q_OBJECT

public:
    ItemModelVoicemail(OpenBackupPtr backup, QList<NamedVoicemail> items, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    FileCatalogue::Index file(int row) const override { return m_items.at(row).item.file; }
    QString exportedName(int row) const override;
    QString description(int row) const override { return describe(m_items.at(row).item); }

protected:
    QString title(int row) const override;
    QDateTime date(int row) const override { return m_items.at(row).item.date; }
    int durationSeconds(int row) const override { return m_items.at(row).item.duration; }
    QString toolTip(int row) const override;
    const char *titleOfTitles() const override { return "IDS_COL_SENDER"; }

private:
    OpenBackupPtr m_backup;
    QList<NamedVoicemail> m_items;
};
