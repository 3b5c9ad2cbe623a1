#include "base/report.h"

#include "base/error.h"
#include "base/texts.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr qsizetype namedPlaces = 5;

QString identityOf(const Issue &issue)
{
    return QString::number(static_cast<int>(issue.kind)) + QLatin1Char('\n') + QLatin1String(issue.what) +
           QLatin1Char('\n') + issue.where + QLatin1Char('\n') + issue.reason;
}

bool sameButPlace(const Issue &one, const Issue &other)
{
    return one.kind == other.kind && std::strcmp(one.what, other.what) == 0 && one.reason == other.reason;
}

/// The issues of a report that are told together, with all their places.
struct Told
{
    Issue issue;
    QStringList places;
};

// One pass, since a place or a reason may hold a "%1" of its own; not every text has both.
QString filled(const QString &text, const QString &where, const QString &reason)
{
    QString result;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QStringView rest = QStringView(text).sliced(at, std::min<qsizetype>(2, text.size() - at));
        if (rest == QLatin1String("%1") || rest == QLatin1String("%2")) {
            result += rest.back() == QLatin1Char('1') ? where : reason;
            ++at;
        } else {
            result += text[at];
        }
    }
    return result;
}

QString joinedPlaces(const QStringList &places)
{
    QString text = places.first(std::min(namedPlaces, places.size())).join(QStringLiteral(", "));
    if (places.size() > namedPlaces)
        text += QLatin1Char(' ') + textFor("IDS_AND_%1_MORE").arg(places.size() - namedPlaces);
    return text;
}

QList<Told> told(const Report &report)
{
    QList<Told> list;
    QHash<QString, qsizetype> places;
    for (const Issue &issue : report.issues()) {
        Issue anywhere = issue;
        anywhere.where.clear();
        const auto known = places.constFind(identityOf(anywhere));
        if (known == places.constEnd()) {
            places.insert(identityOf(anywhere), list.size());
            list.append({issue, {issue.where}});
            continue;
        }
        Told &same = list[*known];
        same.issue.count += issue.count;
        same.places.append(issue.where);
    }
    std::stable_sort(list.begin(), list.end(),
                     [](const Told &one, const Told &other) { return one.issue.kind < other.issue.kind; });
    return list;
}

template <typename Wanted>
QStringList sentences(const Report &report, EverythingHint hint, Wanted wanted)
{
    QStringList list;
    for (Told &one : told(report)) {
        if (!wanted(one.issue.kind))
            continue;
        one.issue.where = joinedPlaces(one.places);
        list.append(sentenceOf(one.issue, hint));
    }
    return list;
}
} // namespace

bool Issue::operator==(const Issue &other) const
{
    return sameButPlace(*this, other) && where == other.where && count == other.count;
}

void Report::add(const Issue &issue)
{
    const QString identity = identityOf(issue);
    const auto known = m_places.constFind(identity);
    if (known != m_places.constEnd()) {
        m_issues[*known].count += issue.count;
        return;
    }
    m_places.insert(identity, m_issues.size());
    m_issues.append(issue);
}

void Report::add(const char *what, const Error &error)
{
    IssueKind kind = error.isWriting() ? IssueKind::Refused : IssueKind::Damaged;
    if (error.kind() == ErrorKind::Locked)
        kind = IssueKind::Locked;
    add({.kind = kind, .what = what, .where = error.where(), .reason = error.sentence()});
}

void Report::merge(const Report &other)
{
    done += other.done;
    for (const Issue &issue : other.issues())
        add(issue);
}

qint64 Report::count(IssueKind kind) const
{
    qint64 sum = 0;
    for (const Issue &issue : m_issues)
        sum += issue.kind == kind ? issue.count : 0;
    return sum;
}

qint64 Report::count(const char *what) const
{
    qint64 sum = 0;
    for (const Issue &issue : m_issues)
        sum += std::strcmp(issue.what, what) == 0 ? issue.count : 0;
    return sum;
}

bool Report::isFailure() const
{
    return std::any_of(m_issues.cbegin(), m_issues.cend(),
                       [](const Issue &issue) { return ::isFailure(issue.kind); });
}

bool isFailure(IssueKind kind)
{
    return kind == IssueKind::Damaged || kind == IssueKind::Locked || kind == IssueKind::Refused;
}

QString sentenceOf(const Issue &issue, EverythingHint hint)
{
    QString sentence = filled(textFor(issue.what, issue.count), issue.where, issue.reason).simplified();
    if (issue.kind == IssueKind::Hidden && hint == EverythingHint::Option)
        sentence += QLatin1Char(' ') + textFor("IDS_EVERYTHING_BRINGS_IN", issue.count);
    return sentence;
}

QStringList sentencesOf(const Report &report, EverythingHint hint)
{
    return sentences(report, hint, [](IssueKind) { return true; });
}

QStringList problemsOf(const Report &report)
{
    return sentences(report, EverythingHint::None, [](IssueKind kind) { return isFailure(kind); });
}
