#pragma once

#include "sqlite/sqlite3_db.h"

#include <functional>

/// A small database of the program's own that only saves work: made by a script when it is new, made anew
/// when it is damaged, and done without when it cannot be used. Other runs may use the same file.
class CacheDatabase
{
public:
    /// `script` is the resource with the tables.
    CacheDatabase(const QString &path, const QString &script);

    using Action = std::function<void(Sqlite3DB &)>;

    /// Runs `action` on the open database, a second time when the first found it damaged. False, with a line
    /// in the log, when it could not be done.
    bool read(const Action &action);
    /// The same in a transaction.
    bool change(const Action &action);

private:
    QString m_path;
    QString m_script;
    Sqlite3DB m_db;

    void open();
    void makeTables();
    bool isDamaged() const;
    void removeFiles() const;
};
