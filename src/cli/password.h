#pragma once

#include <QString>

#include <optional>

namespace CLI {
class App;
class Option;
} // namespace CLI

/// Where a command gets the password of an encrypted backup: a file, the environment, or the terminal.
class PasswordOption
{
public:
    explicit PasswordOption(CLI::App &command);

    /// What the file (less one line end) or the environment gives. Throws Error when the file cannot be read.
    std::optional<QString> given() const;
    /// The same, and asks on the terminal when there is none.
    std::optional<QString> givenOrAsked(const QString &backup) const;

private:
    CLI::Option *m_file;
};
