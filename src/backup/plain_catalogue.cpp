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

QString plainCatalogue(const QString &folder, ScratchFolder &scratch)
{
    const QString name = QStringLiteral("Manifest.db");
    const QString original = QDir(folder).filePath(name);
    std::uint64_t companionBytes = 0;
    for (const char *companion : companions)
        companionBytes += sizeOf(original + QLatin1String(companion));
    if (companionBytes == 0)
        return original;
    try {
        const QString copy = scratch.withRoomFor(2 * (sizeOf(original) + companionBytes)) +
                             QStringLiteral("/catalogue/Manifest.db");
        copyFile({folder, name}, copy);
        for (const char *companion : companions)
            if (sizeOf(original + QLatin1String(companion)) > 0)
                copyFile({folder, name + QLatin1String(companion)}, copy + QLatin1String(companion));
        applyLog(copy);
        return copy;
    } catch (const Error &error) {
        qWarning("The log beside %s is left out: %s", qUtf8Printable(original), error.what());
        return original;
    }
}
