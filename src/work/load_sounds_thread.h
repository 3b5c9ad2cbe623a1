#pragma once

#include "personal/media_items.h"
#include "work/load_items_thread.h"

/// A voicemail and the name of the person whose number called; empty for a stranger.
struct NamedVoicemail
{
    VoicemailItem item;
    QString name;
};

/// The voicemail of a backup, in the database's order. Throws Error.
QList<NamedVoicemail> readNamedVoicemail(BackupManifest &backup, Report &report);

using LoadVoicemailThread = LoadItemsThread<NamedVoicemail>;
using LoadRecordingsThread = LoadItemsThread<RecordingItem>;
