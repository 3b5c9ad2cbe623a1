#include "base/file_names.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextBoundaryFinder>

namespace {
constexpr qsizetype longestNameBytes = 255;
// A longer end of a name is no file name extension.
constexpr qsizetype longestExtensionBytes = 32;

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

NameEnds splitAtLastDot(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0 || name.mid(dot).toUtf8().size() > longestExtensionBytes)
        return {name, {}};
    return {name.left(dot), name.mid(dot)};
}

QString fittingFileName(const QString &stem, const QString &end)
{
    const qsizetype room = longestNameBytes - end.toUtf8().size();
    if (stem.toUtf8().size() <= room)
        return stem + end;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, stem);
    qsizetype bytes = 0;
    qsizetype kept = 0;
    for (qsizetype next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary()) {
        bytes += QStringView(stem).sliced(kept, next - kept).toUtf8().size();
        if (bytes > room)
            break;
        kept = next;
    }
    return stem.left(kept) + end;
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
