#pragma once

#include "personal/scope.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <string>

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
/// An option that must be there, with one value or several, and may come again.
CLI::Option *addValueList(CLI::App &command, const char *name, const char *description);
/// A positional argument that must be there.
CLI::Option *addPositional(CLI::App &command, const char *name, const char *description);

/// A positional argument that must be there and may be followed by more of its kind.
CLI::Option *addPositionals(CLI::App &command, const char *name, const char *description);
/// A switch; `isGiven` tells.
CLI::Option *addSwitch(CLI::App &command, const char *name, const char *description);
bool isGiven(const CLI::Option *option);

/// "--everything", which brings in what the rules leave out.
CLI::Option *addEverything(CLI::App &command);
Scope scopeOf(const CLI::Option *everything);

QStringList valuesOf(const CLI::Option *option);
/// Nothing when the option was not given.
std::optional<QString> valueOf(const CLI::Option *option);

/// The values as whole numbers in [least, most]; anything else is wrong usage.
QList<qint64> numbersOf(const CLI::Option *option, qint64 least, qint64 most);
std::optional<qint64> numberOf(const CLI::Option *option, qint64 least, qint64 most);

/// A path of a backup as UTF-8, without the "/" that people put behind folders.
QByteArray pathOf(const QString &argument);

/// An argument of the process in the form in which it is given to the parser, which would take "[a,b]" for a
/// list.
std::string protectedArgument(const QString &argument);

/// Ends parsing as wrong usage, with a sentence.
[[noreturn]] void wrongUsage(const QString &sentence);
