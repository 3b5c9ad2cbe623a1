#include "base/app_folders.h"

#include <QFile>

#include <optional>

namespace {
std::optional<QString> &keptFolder()
{
    static std::optional<QString> folder;
    return folder;
}

// The redirect names the parent only; a stale or unreadable one falls back to the usual place.
QString redirectedBase(const QDir &roaming)
{
    const QLatin1String identifier(productIdentifier);
    QFile redirect(
        roaming.filePath(QStringLiteral("Quillbarrow/") + identifier + QStringLiteral(".redirect")));
    if (!redirect.open(QIODevice::ReadOnly))
        return {};
    const QString base = QString::fromUtf8(redirect.readAll());
    return !base.isEmpty() && QFile::exists(base) ? base : QString();
}
} // namespace

QDir roamingFolder()
{
    const QDir home = QDir::home();
    if (home.exists(QStringLiteral("AppData/Roaming")))
        return QDir(home.filePath(QStringLiteral("AppData/Roaming")));
    return QDir(home.filePath(QStringLiteral("Application Data")));
}

QDir appDataFolder()
{
    if (!keptFolder()) {
        const QDir roaming = roamingFolder();
        QString base = redirectedBase(roaming);
        if (base.isEmpty())
            base = roaming.absoluteFilePath(QStringLiteral("Quillbarrow"));
        const QDir folder(QDir(base).filePath(QLatin1String(productIdentifier)));
        folder.mkpath(QStringLiteral("."));
        keptFolder() = folder.path();
    }
    return QDir(*keptFolder());
}

QDir localDatabasesFolder()
{
    const QDir folder(appDataFolder().filePath(QStringLiteral("local_databases")));
    folder.mkpath(QStringLiteral("."));
    return folder;
}

void forgetAppDataFolder()
{
    keptFolder().reset();
}
