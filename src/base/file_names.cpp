#include "base/file_names.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {
// Windows reserves more names than these; the list is part of the promise which names change.
constexpr const char *deviceNames[] = {"CON",  "PRN",  "AUX",  "CLOCK$", "NUL",  "COM1", "COM2", "COM3",
                                       "COM4", "COM5", "COM6", "COM7",   "COM8", "COM9", "LPT1"};

bool isDeviceName(QStringView base)
{
    for (const char *name : deviceNames)
        if (base.compare(QLatin1String(name), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

struct NameParts
{
    QString base;   // before the first dot
    QString suffix; // after the last dot
};

NameParts split(const QString &name)
{
    const qsizetype first = name.indexOf(QLatin1Char('.'));
    if (first < 0)
        return {name, {}};
    return {name.left(first), name.mid(name.lastIndexOf(QLatin1Char('.')) + 1)};
}

QString withSuffix(const QString &base, const QString &suffix)
{
    return suffix.isEmpty() ? base : base + QLatin1Char('.') + suffix;
}

// A dangling link occupies its name too: writing to it would write somewhere else.
bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}
} // namespace

QString safeFileName(const QString &text)
{
    const NameParts parts = split(text);
    if (isDeviceName(parts.base))
        return withSuffix(QStringLiteral("$$%1$$").arg(parts.base), parts.suffix);
    static const QRegularExpression forbidden(QStringLiteral("[\\\\/:*?\"<>|\\n\\r\\t]"));
    QString name = text;
    return name.remove(forbidden).trimmed();
}

QString freeFileName(const QString &path)
{
    if (!isTaken(path))
        return path;
    const QFileInfo info(path);
    const NameParts parts = split(info.fileName());
    for (int n = 1;; ++n) {
        const QString name =
            withSuffix(QStringLiteral("%1(%2)").arg(parts.base, QString::number(n)), parts.suffix);
        const QString candidate = info.path() == QLatin1String(".") && !path.startsWith(QLatin1String("./"))
                                      ? name
                                      : QDir(info.path()).filePath(name);
        if (!isTaken(candidate))
            return candidate;
    }
}

void removeFolderTree(const QString &path)
{
    const QFileInfo info(path);
    if (info.isSymLink()) {
        QFile::remove(path);
        return;
    }
    if (!info.isDir())
        return;
    const QDir folder(path);
    const auto entries =
        folder.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (entry.isDir() && !entry.isSymLink())
            removeFolderTree(entry.filePath());
        else
            QFile::remove(entry.filePath());
    }
    folder.rmdir(folder.absolutePath());
}
