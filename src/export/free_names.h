#pragma once

#include <QHash>
#include <QSet>
#include <QString>

/// Hands out file names that are free in one folder: neither there when it was made nor handed out before.
/// Names that differ only in case or in the composition of accents count as one, since the folder may be
/// carried to a file system that sees it so.
class FreeNames
{
public:
    explicit FreeNames(const QString &folder);

    /// `name` itself, else the first of "base(1).suffix", "base(2).suffix", ... The base ends at the first
    /// dot, the suffix begins after the last. Names too long for a file system are cut before the extension.
    QString take(const QString &name);
    /// Gives a name back that was not used after all.
    void release(const QString &name);

private:
    QString m_folder;
    QSet<QString> m_taken;
    QHash<QString, int> m_lastNumber; // so that 10,000 files of one name do not try 10,000 numbers each

    bool takeIfFree(const QString &name);
};

/// safeFileName without any control character or a dot or blank at the end; `fallback` when nothing is left.
QString portableFileName(const QString &text, const QString &fallback);
