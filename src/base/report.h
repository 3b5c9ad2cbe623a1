#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

class Error;

enum class IssueKind {
    Damaged, // cannot be read whole
    Locked,  // of a class that the password does not unlock: handed over as stored, which is no content
    Refused, // could not be handed over: not written, not added
    Hidden,  // left out by a rule of the program; comes in when everything is asked for
    LeftOut, // left out by a rule of the program, for good
    Absent,  // the backup itself does not have it
    Renamed,
    Remark, // nothing is missing, but the person should know
};

/// One thing that did not come through as it stands in the source, or that many of one kind.
struct Issue
{
    IssueKind kind = IssueKind::Damaged;
    /// Key of a text with numerus forms: %n is the number, %1 the place, %2 the reason.
    const char *what = "";
    QString where{};  // the file of the backup, "domain path", or what else tells one thing from another
    qint64 count = 1; // 0 where it cannot be told how many
    QString reason{}; // a sentence from below, such as SQLite's; may be empty

    bool operator==(const Issue &other) const;
};

/// What a job handed over and what it could not: passed from the reader that notices something to the edge that
/// tells it. Equal issues are one with a number. Used by one thread at a time.
class Report
{
public:
    qint64 done = 0; // of what the job counts: records, messages, files

    void add(const Issue &issue);
    /// The same for a failure that did not end the job; `what` is a text with %1 for the place and %2 for the
    /// sentence of the error. The kind is that of the error: damaged, locked, or refused when something could
    /// not be written.
    void add(const char *what, const Error &error);
    /// Adds the issues of another, and what it has done.
    void merge(const Report &other);

    const QList<Issue> &issues() const { return m_issues; }
    bool isEmpty() const { return m_issues.isEmpty(); }
    /// How many things of a kind, or of one text, there are in all.
    qint64 count(IssueKind kind) const;
    qint64 count(const char *what) const;
    /// True when something of the source was damaged or could not be handed over.
    bool isFailure() const;

private:
    QList<Issue> m_issues;
    QHash<QString, qsizetype> m_places; // of an issue's identity in m_issues
};

/// True for what ends a command with a failure: damage, locked, refused.
bool isFailure(IssueKind kind);

/// How what was left out by a rule can be brought in, told behind its sentence.
enum class EverythingHint { None, Option /* "(--everything brings them in)" */ };

/// One sentence for people of an issue.
QString sentenceOf(const Issue &issue, EverythingHint hint = EverythingHint::None);

/// The sentences of a report, what is damaged first: issues that differ in their place alone are one sentence
/// with the sum, which names the first few places.
QStringList sentencesOf(const Report &report, EverythingHint hint = EverythingHint::None);

/// Those among them that tell of damage, of locked files and of what could not be handed over.
QStringList problemsOf(const Report &report);
