#pragma once

#include "sample/backup_frame.h"
#include "sample/sample_maker.h"

namespace sample {

/// One run of the maker: what every data class needs to add its files.
struct Making
{
    const SampleOptions &options;
    const Generation &generation;
    SeededGenerator chance;
    QString scratch; // a folder for databases in the making
    BackupContainer &container;
    SampleSummary &summary;

    QString inScratch(const char *name) const { return scratch + QLatin1Char('/') + QLatin1String(name); }
    /// A place in the backup whose time lies `daysBefore` the backup.
    FilePlace place(const char *domain, const QString &relativePath, int daysBefore = 0) const;
};

/// Each writes the files of one data class in the schema of the generation and counts its records.
void addMessages(Making &making);
void addContacts(Making &making);
void addCalls(Making &making);
void addNotes(Making &making);
void addCalendar(Making &making);
void addBookmarks(Making &making);
void addVoicemail(Making &making);
void addRecordings(Making &making);
void addCameraRoll(Making &making);
/// The files that belong to no data class, with everything a catalogue may hold, and the rows asked for.
void addExtraFiles(Making &making);

} // namespace sample
