#include "backup/plain_catalogue.h"

#include "backup/file_cipher.h"
#include "base/error.h"
#include "sqlite/sqlite3_db.h"

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

void applyCompanions(const QString &copy)
{
    Sqlite3DB db;
    db.openThrow(copy, SqliteOpen::ReadWrite);
    if (!db.exec(QStringLiteral("pragma journal_mode=delete")))
        throw Error(QStringLiteral("can not read %1. %2").arg(copy, db.lastError()));
}
} // namespace

QString plainCatalogue(const QString &folder, ScratchFolder &scratch)
{
    const QString original = QDir(folder).filePath(QStringLiteral("Manifest.db"));
    std::uint64_t companionBytes = 0;
    for (const char *companion : companions)
        companionBytes += sizeOf(original + QLatin1String(companion));
    if (companionBytes == 0)
        return original;
    try {
        const QString copy = scratch.withRoomFor(2 * (sizeOf(original) + companionBytes)) +
                             QStringLiteral("/catalogue/Manifest.db");
        copyFile(original, copy);
        for (const char *companion : companions)
            if (sizeOf(original + QLatin1String(companion)) > 0)
                copyFile(original + QLatin1String(companion), copy + QLatin1String(companion));
        applyCompanions(copy);
        return copy;
    } catch (const Error &error) {
        qWarning("The log beside %s is left out: %s", qUtf8Printable(original), error.what());
        return original;
    }
}
