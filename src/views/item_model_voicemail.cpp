#include "views/item_model_voicemail.h"

#include "base/texts.h"

ItemModelVoicemail::ItemModelVoicemail(OpenBackupPtr backup, QList<NamedVoicemail> items, QObject *parent)
    : AbsSoundModel(parent), m_backup(std::move(backup)), m_items(std::move(items))
{
}

int ItemModelVoicemail::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QString ItemModelVoicemail::exportedName(int row) const
{
    return exportName(m_items.at(row).item, m_backup->manifest().catalogue());
}

QString ItemModelVoicemail::title(int row) const
{
    const NamedVoicemail &voicemail = m_items.at(row);
    if (!voicemail.name.isEmpty())
        return voicemail.name;
    return voicemail.item.sender.isEmpty() ? textFor("IDS_UNKNOWN_CALLER") : voicemail.item.sender;
}

QString ItemModelVoicemail::toolTip(int row) const
{
    const NamedVoicemail &voicemail = m_items.at(row);
    if (voicemail.item.file == FileCatalogue::none)
        return textFor("IDS_NO_VOICEMAIL_FILE");
    return voicemail.item.sender.isEmpty() ? title(row) : voicemail.item.sender;
}
