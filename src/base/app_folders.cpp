#include "base/app_folders.h"

#include "base/error.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <optional>

#ifdef Q_OS_UNIX
#include <pwd.h>
#include <unistd.h>
#endif

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

QFile::Permissions withoutOthers(QFile::Permissions permissions)
{
    return permissions & ~(QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                           QFile::WriteOther | QFile::ExeOther);
}

/// What lies in a folder that others cannot enter is out of their reach already.
void closeToOthers(const QFileInfo &folder)
{
    const QFileInfoList entries = QDir(folder.filePath())
                                      .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoSymLinks |
                                                     QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        const QFile::Permissions own = withoutOthers(entry.permissions());
        if (own == entry.permissions())
            continue;
        if (entry.isDir())
            closeToOthers(entry);
        QFile::setPermissions(entry.filePath(), own);
    }
}
} // namespace

QDir homeFolder()
{
#ifdef Q_OS_UNIX
    // Qt would take the root of the file system for it.
    if (qEnvironmentVariableIsEmpty("HOME")) {
        const passwd *user = getpwuid(getuid());
        const QString home = user ? QFile::decodeName(user->pw_dir) : QString();
        if (home.isEmpty() || QDir(home).isRoot() || !QFileInfo(home).isDir())
            throw Error(QStringLiteral("There is no home folder to keep data in: HOME is not set, and this "
                                       "user has none."));
        return QDir(home);
    }
#endif
    return QDir::home();
}

QDir roamingFolder()
{
    const QDir home = homeFolder();
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
        const QFileInfo info(folder.path());
        closeToOthers(info);
        QFile::setPermissions(folder.path(), withoutOthers(info.permissions()));
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

bool isLocalDatabaseName(const QString &name)
{
    constexpr qsizetype longestBytes = 255;
    static const QString forbidden = QStringLiteral("/\\:*?\"<>|");
    const auto isForbidden = [](QChar c) { return c.unicode() < 0x20 || forbidden.contains(c); };
    return !name.trimmed().isEmpty() && !name.startsWith(QLatin1Char('.')) &&
           name.toUtf8().size() <= longestBytes && std::none_of(name.begin(), name.end(), isForbidden);
}

void forgetAppDataFolder()
{
    keptFolder().reset();
}
