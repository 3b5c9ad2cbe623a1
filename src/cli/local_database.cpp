#include "cli/local_database.h"

#include "base/app_folders.h"
#include "base/error.h"
#include "cli/arguments.h"

#include <QFileInfo>

namespace {
const QString localPrefix = QStringLiteral("local:");
const QString deletedPrefix = QStringLiteral("deleted:");

std::optional<QString> folderOf(const QString &source, const QString &prefix)
{
    return source.startsWith(prefix) ? std::optional(requireDatabaseFolder(source.mid(prefix.size())))
                                     : std::nullopt;
}
} // namespace

QString requireDatabaseName(const CLI::Option *option)
{
    const QString name = *valueOf(option);
    if (!isLocalDatabaseName(name))
        wrongUsage(QStringLiteral("NAME: \"%1\" can not be the name of a local database").arg(name));
    return name;
}

QString requireDatabaseFolder(const QString &name)
{
    const QString folder = localDatabasesFolder().filePath(name);
    if (!QFileInfo(folder).isDir())
        throw Error(QStringLiteral("there is no local database \"%1\"").arg(name));
    return folder;
}

std::vector<qint64> recordNumbers(const QStringList &ids)
{
    std::vector<qint64> numbers;
    for (const QString &id : ids) {
        bool isNumber = false;
        numbers.push_back(id.toLongLong(&isNumber));
        if (!isNumber)
            throw Error(QStringLiteral("there is no record \"%1\"").arg(id));
    }
    return numbers;
}

QString requireSource(const CLI::Option *option)
{
    const QString source = *valueOf(option);
    for (const QString &prefix : {localPrefix, deletedPrefix})
        if (source.startsWith(prefix) && !isLocalDatabaseName(source.mid(prefix.size())))
            wrongUsage(QStringLiteral("SOURCE: \"%1\" can not be the name of a local database")
                           .arg(source.mid(prefix.size())));
    return source;
}

std::optional<QString> localDatabaseOf(const QString &source)
{
    return folderOf(source, localPrefix);
}

std::optional<QString> deletedMessagesOf(const QString &source)
{
    return folderOf(source, deletedPrefix);
}
