#pragma once

#include "backup/backup_info.h"
#include "sqlite/sqlite3_db.h"

#include <optional>
#include <vector>

/// What earlier exports wrote into a folder: which file of which device lies at each place, and how large it
/// was when it was written. It is kept in the application's data folder, so that the target holds nothing but
/// what was exported. Names are kept as hashes only: those of an encrypted backup are nobody's business. When
/// it is lost, files are recognised by size and time alone.
class ExportMemory
{
public:
    struct Entry
    {
        QByteArray source; // see sourceOf()
        qint64 sizeBytes = 0;
    };

    explicit ExportMemory(const QString &targetFolder);
    /// Writes down what is not yet.
    ~ExportMemory();
    ExportMemory(const ExportMemory &) = delete;
    ExportMemory &operator=(const ExportMemory &) = delete;

    /// Stands for a file of a device, the same in its later backups.
    static QByteArray sourceOf(const BackupInfo &backup, QByteArrayView domain, QByteArrayView relativePath);

    /// What an earlier run wrote there; places are relative to the folder.
    std::optional<Entry> at(const QString &place);
    void remember(const QString &place, const Entry &entry);

private:
    struct New
    {
        QByteArray place;
        Entry entry;
    };

    QString m_folder;
    Sqlite3DB m_database; // closed when it cannot be used
    std::vector<New> m_new;

    void open(const QString &path);
    void takeOverNames();
    void writeDown();
};
