#pragma once

#include "base/report.h"
#include "export/record_export.h"
#include "work/record_source.h"
#include "work/worker_thread.h"

/// Reads the records of one class.
class LoadRecordsThread : public WorkerThread
{
    Q_OBJECT

public:
    LoadRecordsThread(RecordSource source, DataClass dataClass, Scope scope = Scope::Usual);

    /// To be read after success.
    const RecordsPtr &records() const { return m_records; }
    /// What does not come with them, and what the backup's catalogue lost.
    const Report &report() const { return m_report; }

protected:
    QString work(Progress &progress) override;

private:
    RecordSource m_source;
    DataClass m_dataClass;
    Scope m_scope;
    RecordsPtr m_records;
    Report m_report;
};

/// Saves the records of one class into a local database; a class of data has its own type below.
class SaveRecordsThread : public WorkerThread
{
    Q_OBJECT

public:
    SaveRecordsThread(RecordSource source, DataClass dataClass, QString folder, Scope scope = Scope::Usual);

protected:
    QString work(Progress &progress) override;

private:
    RecordSource m_source;
    DataClass m_dataClass;
    QString m_folder;
    Scope m_scope;
};

template <DataClass Class>
class BackupThread : public SaveRecordsThread
{
public:
    BackupThread(RecordSource source, QString folder, Scope scope = Scope::Usual)
        : SaveRecordsThread(std::move(source), Class, std::move(folder), scope)
    {
    }
};
using BackupContactsThread = BackupThread<DataClass::Contacts>;
using BackupCallsThread = BackupThread<DataClass::Calls>;
using BackupNotesThread = BackupThread<DataClass::Notes>;
using BackupCalendarThread = BackupThread<DataClass::Calendar>;
using BackupBookmarsThread = BackupThread<DataClass::Bookmarks>;

/// The worker that saves a class. Null for a class that is not kept as records.
std::unique_ptr<WorkerThread> makeBackupThread(DataClass dataClass, RecordSource source, QString folder,
                                               Scope scope = Scope::Usual);

/// Removes records of a local database by the identities that it shows them under, all or none.
class RemoveRecordsThread : public WorkerThread
{
    Q_OBJECT

public:
    /// `doneText` is the key of the text for success.
    RemoveRecordsThread(DataClass dataClass, QString folder, QStringList ids, const char *doneText);

protected:
    QString work(Progress &progress) override;

private:
    DataClass m_dataClass;
    QString m_folder;
    QStringList m_ids;
    const char *m_doneText;
};

/// Writes records to a file, or notes to a folder; a class of data has its own type below.
class ExportRecordsThread : public WorkerThread
{
    Q_OBJECT

public:
    ExportRecordsThread(RecordSelection selection, QString format, QString target);

protected:
    QString work(Progress &progress) override;

private:
    RecordSelection m_selection;
    QString m_format;
    QString m_target;
};

template <typename Selected>
class ExportThread : public ExportRecordsThread
{
public:
    ExportThread(Selected selected, QString format, QString target)
        : ExportRecordsThread(std::move(selected), std::move(format), std::move(target))
    {
    }
};
using ExportToFileThread = ExportThread<QList<ContactRecord>>;
using ExportCallHistoryThread = ExportThread<QList<CallEntry>>;
using ExportNotesThread = ExportThread<QList<NoteEntry>>;
using ExportCalendarThread = ExportThread<QList<CalendarEvent>>;
using ExportBookmarkThread = ExportThread<std::shared_ptr<const BookmarkTree>>;

/// The worker that writes such a selection.
std::unique_ptr<WorkerThread> makeExportThread(RecordSelection selection, QString format, QString target);
