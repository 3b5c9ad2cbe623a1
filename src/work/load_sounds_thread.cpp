#include "work/load_sounds_thread.h"

#include "personal/home_country.h"
#include "personal/number_names.h"

QList<NamedVoicemail> readNamedVoicemail(BackupManifest &backup, Report &report)
{
    const QList<VoicemailItem> items = readVoicemail(backup, report);
    const NumberNames names(backup, numbersOf(&backup).normalise, report);
    QList<NamedVoicemail> named;
    for (const VoicemailItem &item : items)
        named.append({item, names.nameOfNumber(item.sender)});
    return named;
}
