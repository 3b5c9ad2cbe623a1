#pragma once

#include <QStringList>

#include <optional>
#include <vector>

namespace CLI {
class Option;
} // namespace CLI

// Local databases as a command line names them.

/// What a SOURCE argument may be.
inline constexpr char sourceDescription[] =
    "a backup's folder, local:NAME, or for messages a message database or deleted:NAME";

/// A NAME argument; ends as wrong usage for one that is no single path component.
QString requireDatabaseName(const CLI::Option *option);

/// The folder of a local database; throws Error when there is none of that name.
QString requireDatabaseFolder(const QString &name);

/// Identities as the numbers that they are; throws Error for one that is none.
std::vector<qint64> recordNumbers(const QStringList &ids);

/// A SOURCE argument; ends as wrong usage for a "local:NAME" or "deleted:NAME" whose NAME is no single path
/// component.
QString requireSource(const CLI::Option *option);

/// The folder of the local database that "local:NAME" names; nothing for another source. Throws Error when
/// there is no such database.
std::optional<QString> localDatabaseOf(const QString &source);

/// The same of "deleted:NAME": the messages that were removed from it.
std::optional<QString> deletedMessagesOf(const QString &source);
