#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace CLI {
class App;
class Option;
} // namespace CLI

// Options are kept as the plain texts that were given: an empty path, a path in brackets and a path that
// looks like a number mean themselves.

/// An option that takes one value and may be given once.
CLI::Option *addValue(CLI::App &command, const char *name, const char *description);
/// An option that takes one value and may be given again and again.
CLI::Option *addValues(CLI::App &command, const char *name, const char *description);
/// A positional argument that must be there.
CLI::Option *addPositional(CLI::App &command, const char *name, const char *description);

/// A switch; `isGiven` tells.
CLI::Option *addSwitch(CLI::App &command, const char *name, const char *description);
bool isGiven(const CLI::Option *option);

QStringList valuesOf(const CLI::Option *option);
/// Nothing when the option was not given.
std::optional<QString> valueOf(const CLI::Option *option);

/// The values as whole numbers in [least, most]; anything else is wrong usage.
QList<qint64> numbersOf(const CLI::Option *option, qint64 least, qint64 most);
std::optional<qint64> numberOf(const CLI::Option *option, qint64 least, qint64 most);

/// Ends parsing as wrong usage, with a sentence.
[[noreturn]] void wrongUsage(const QString &sentence);
