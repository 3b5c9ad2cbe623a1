#pragma once

#include <QString>

#include <stdexcept>

/// A failure, carrying one sentence for the user that says what, which file and where.
/// A wrong password is never an Error (it is a false result) and a user's stop is a Cancelled.
class Error : public std::runtime_error
{
public:
    explicit Error(const QString &sentence);

    QString sentence() const;

    /// The same failure with "context: " before its sentence.
    Error withContext(const QString &context) const;
};

/// The user asked to stop. Not a failure: it is never shown as one.
class Cancelled : public std::exception
{
public:
    const char *what() const noexcept override { return "cancelled"; }
};
