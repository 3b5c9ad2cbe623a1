#pragma once

#include "base/file_identity.h"

#include <QList>
#include <QStringList>

class QFileInfo;

/// Keeps what this program writes away from what it reads: while one lives, nothing replaces or joins a file of the
/// source that it stands for. Files and folders are told apart by what they are, so neither a
/// link nor another spelling of a path leads around it.
class SourceGuard
{
public:
    /// Whose writing it keeps away: what one job only reads, another may be writing to.
    enum class Reach { EveryThread, ThisThread };

    /// A folder stands for all that lies below it, a file for itself and for what a database keeps beside it. What
    /// is not there is passed over.
    explicit SourceGuard(const QStringList &places, Reach reach = Reach::EveryThread);
    ~SourceGuard();
    SourceGuard(const SourceGuard &) = delete;
    SourceGuard &operator=(const SourceGuard &) = delete;

    /// Call before a file or folder of that path is made, and again before a file is put in its place. Throws Error
    /// when it would replace or join a file of a source. May be called from any thread.
    static void requireOutside(const QString &path);

private:
    struct Beside
    {
        FileIdentity folder;
        QString name;
    };

    const void *m_thread; // of ThisThread, else null
    QList<FileIdentity> m_places;
    QList<Beside> m_beside;

    bool covers(const QFileInfo &file, const QList<FileIdentity> &fileAndAbove) const;
};
