#include "backup/plain_catalogue.h"

#include "backup/database_log.h"
#include "backup/file_cipher.h"
#include "base/error.h"

#include <QDir>
#include <QFileInfo>

namespace {
// A log of committed changes, and one to undo an unfinished change.
constexpr const char *companions[] = {"-wal", "-journal"};

std::uint64_t sizeOf(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() ? static_cast<std::uint64_t>(info.size()) : 0;
}
} // namespace

QString plainCatalogue(const QString &folder, ScratchFolder &scratch, Report &report)
{
    const QString name = QStringLiteral("Manifest.db");
    const QString log = name + QLatin1String(companions[0]);
    const QString original = QDir(folder).filePath(name);
    std::uint64_t companionBytes = 0;
    for (const char *companion : companions)
        companionBytes += sizeOf(original + QLatin1String(companion));
    const auto tell = [&](const QString &why) {
        report.add({.what = "IDS_ISSUE_DATABASE_LOG", .where = log, .reason = why});
    };
    if (companionBytes == 0) {
        if (QFileInfo(QDir(folder).filePath(log)).isSymLink())
            tell(QStringLiteral("it is a symbolic link"));
        return original;
    }
    try {
        const QString copy = scratch.withRoomFor(2 * (sizeOf(original) + companionBytes)) +
                             QStringLiteral("/catalogue/Manifest.db");
        copyFile({folder, name}, copy);
        for (const char *companion : companions)
            if (sizeOf(original + QLatin1String(companion)) > 0)
                copyFile({folder, name + QLatin1String(companion)}, copy + QLatin1String(companion));
        const QString copiedLog = copy + QLatin1String(companions[0]);
        if (const QString fault = QFileInfo::exists(copiedLog) ? faultOfLog(copiedLog) : QString(); !fault.isEmpty())
            tell(fault);
        applyLog(copy);
        return copy;
    } catch (const Error &error) {
        tell(error.sentence());
        return original;
    }
}
