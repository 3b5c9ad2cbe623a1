#pragma once

#include "backup/backup_manifest.h"
#include "base/error.h"
#include "sample/sample_maker.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QByteArray sha1Of(const QString &path)
{
    return QCryptographicHash::hash(contentOf(path), QCryptographicHash::Sha1);
}

inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qUtf8Printable(path));
}

/// Relative paths of all that lies in a folder, sorted.
inline QStringList listing(const QString &folder)
{
    QStringList paths;
    QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
        paths.append(QDir(folder).relativeFilePath(entries.next()));
    paths.sort();
    return paths;
}

/// Names, contents, permissions and change times of all that lies in a folder.
inline QString fingerprint(const QString &folder)
{
    QStringList lines;
    const QStringList paths = listing(folder);
    for (const QString &path : paths) {
        const QFileInfo info(QDir(folder).filePath(path));
        lines.append(
            QStringLiteral("%1 %2 %3 %4")
                .arg(path, info.lastModified().toString(Qt::ISODateWithMs))
                .arg(info.permissions().toInt())
                .arg(info.isFile() ? QString::fromLatin1(sha1Of(info.filePath()).toHex()) : QString()));
    }
    return lines.join(QLatin1Char('\n'));
}

/// The sentence of the Error that `action` throws; empty when it throws none.
template <typename Action>
QString errorOf(const Action &action)
{
    try {
        action();
    } catch (const Error &error) {
        return error.sentence();
    }
    return {};
}

/// A sample backup in a temporary folder, with room beside it, and ways to open it.
class BackupFixture
{
public:
    explicit BackupFixture(SampleOptions options = {})
    {
        options.folder = path(QStringLiteral("backup"));
        options.dpic = 2;
        options.iter = 2;
        m_password = options.password;
        summary = makeSample(options);
    }

    QString path(const QString &name) const { return m_parent.filePath(name); }
    QString folder() const { return path(QStringLiteral("backup")); }

    std::unique_ptr<BackupManifest> unlocked() const
    {
        auto backup = std::make_unique<BackupManifest>(folder());
        backup->loadInfo();
        if (!backup->isUnlocked() && !backup->openEncrypted(m_password))
            throw Error(QStringLiteral("the password of the sample is not taken"));
        return backup;
    }
    std::unique_ptr<BackupManifest> opened() const
    {
        auto backup = unlocked();
        NoProgress progress;
        backup->buildIndex(progress);
        return backup;
    }

    SampleSummary summary;

private:
    QTemporaryDir m_parent;
    QString m_password;
};
