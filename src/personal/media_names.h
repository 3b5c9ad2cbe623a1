#pragma once

#include "personal/media_items.h"

/// The name that the sound is exported under: sorts by date and says who, as
/// "20260131-123000-+15550100.amr". The item must have a file.
QString exportName(const VoicemailItem &item, const FileCatalogue &catalogue);
QString exportName(const RecordingItem &item, const FileCatalogue &catalogue);

/// The name of a photo or video on the device, without its folders.
QString cameraItemName(const FileCatalogue &catalogue, FileCatalogue::Index item);

/// Tells an item apart in a sentence: "'date:2026-01-31 12:30:00, sender:+15550100'", local time.
QString describe(const VoicemailItem &item);
QString describe(const RecordingItem &item);
