#pragma once

#include "backup/file_cipher.h"
#include "backup/part_file.h"

#include <QFile>
#include <QString>

/// Sets access and modification time of an open file; false when that fails.
bool setTimes(QFile &file, std::uint32_t unixSeconds);

/// A file that is complete or absent: it is written under a name of its own beside its place and renamed over
/// it by commit(). A link that stands at the place is replaced, never followed. Without commit() nothing
/// stays behind; what a run that was killed left in the folder goes with the first target there. Only its owner may
/// read it: it holds somebody's data. Nothing is written over a source that is being read. Every failure is thrown as
/// Error("can not create %1. %2") or Error("can not write %1. %2") with the final path.
class TargetFile
{
public:
    /// Creates the folder when it is missing.
    explicit TargetFile(const QString &path, Placing placing = Placing::Renamed);
    ~TargetFile();
    TargetFile(const TargetFile &) = delete;
    TargetFile &operator=(const TargetFile &) = delete;

    void write(const char *bytes, qint64 size);
    /// The time is set before the file comes to its place, so that whoever finds it there finds it finished.
    /// 0 leaves the time of writing, and so does a file system that keeps no times.
    void commit(std::uint32_t unixSeconds = 0);

private:
    QString m_path;
    Placing m_placing;
    QFile m_file;
    PartLock m_lock; // goes after the file
    bool m_committed = false;

    void requirePlace() const;
    bool open(const QString &path);
    void openBeside();
    [[noreturn]] void failWriting() const;
};
