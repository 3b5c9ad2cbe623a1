#pragma once

#include "export/record_export.h"
#include "work/record_source.h"
#include "work/worker_thread.h"

/// Reads the records of one class.
class LoadRecordsThread : public WorkerThread
{
    Q_OBJECT

public:
    LoadRecordsThread(RecordSource source, DataClass dataClass);

    /// To be read after success.
    const RecordsPtr &records() const { return m_records; }

protected:
    QString work(Progress &progress) override;

private:
    RecordSource m_source;
    DataClass m_dataClass;
    RecordsPtr m_records;
};

/// Saves the records of one class into a local database.
class SaveRecordsThread : public WorkerThread
{
    Q_OBJECT

public:
    SaveRecordsThread(RecordSource source, DataClass dataClass, QString folder);

protected:
    QString work(Progress &progress) override;

private:
    RecordSource m_source;
    DataClass m_dataClass;
    QString m_folder;
};

/// Writes records to a file, or notes to a folder.
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
