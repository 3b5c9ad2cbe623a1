#pragma once

#include <QString>

#include <stdexcept>

class QFileDevice;

/// What went wrong, for whoever has to decide what follows from it. Nobody looks for words in a sentence.
enum class ErrorKind {
    Other,
    NotFound,
    Damaged, // what is there cannot be read whole, or is something else
    NoSpace,
    Denied,
    Locked, // encrypted with a key that is not at hand
};

/// Whether the file of an error was being read or written.
enum class FileAccess { None, Reading, Writing };

/// A failure, carrying one sentence for the user that says what, which file and where.
/// A wrong password is never an Error (it is a false result) and a user's stop is a Cancelled.
class Error : public std::runtime_error
{
public:
    explicit Error(const QString &sentence, ErrorKind kind = ErrorKind::Other,
                   FileAccess access = FileAccess::None);

    /// A failure of `file`, whose kind is told by the file's own error. "%1" of `sentence` is replaced by its
    /// name, "%2" by its error string.
    static Error ofFile(const QString &sentence, const QFileDevice &file, FileAccess access);

    QString sentence() const;
    ErrorKind kind() const { return m_kind; }
    FileAccess access() const { return m_access; }
    bool isWriting() const { return m_access == FileAccess::Writing; }
    /// The file of the backup that the failure is about, "domain path"; empty where it is about none.
    QString where() const { return m_where; }

    /// The same failure with "context: " before its sentence.
    Error withContext(const QString &context) const;
    /// The same failure, known to be about this file of the backup.
    Error at(const QString &where) const;

private:
    ErrorKind m_kind;
    FileAccess m_access;
    QString m_where;
};

/// The user asked to stop. Not a failure: it is never shown as one.
class Cancelled : public std::exception
{
public:
    const char *what() const noexcept override { return "cancelled"; }
};
