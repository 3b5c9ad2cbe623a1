#pragma once

#include <QString>

class QFile;

// A file in the making lies beside its place under a hidden name of its own, locked for as long as the run
// lives that writes it.

/// A new such name in a folder. It is short, so that wherever the final name fits this one fits, too.
QString partPath(const QString &folder);

/// True for the name of a file in the making.
bool isPartName(const QString &name);

/// Removes what runs that are gone left in a folder; once for each folder in a run.
void sweepParts(const QString &folder);

/// Removes one file in the making unless the run that writes it lives.
void removePartOfADeadRun(const QString &path);

/// Tells other runs that somebody is writing a file, until release(). Where the disk knows no locks, nobody
/// takes the file for a leftover either.
class PartLock
{
public:
    PartLock() = default;
    ~PartLock() { release(); }
    PartLock(const PartLock &) = delete;
    PartLock &operator=(const PartLock &) = delete;

    /// Locks a file that has just been made and is open. False when another run has taken it for a leftover in
    /// between: then it is gone.
    bool take(const QFile &file);
    /// After the file has been closed and has its final name, or is removed.
    void release();

private:
    int m_descriptor = -1;
};
