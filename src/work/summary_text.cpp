#include "work/summary_text.h"

#include "base/report.h"
#include "base/texts.h"

namespace {
constexpr qsizetype namedAtMost = 5;
}

QString listedProblems(const char *key, const QStringList &problems)
{
    if (problems.isEmpty())
        return {};
    const QString head = textFor(key, problems.size());
    for (const QString &problem : problems)
        qWarning("%s %s", qUtf8Printable(head), qUtf8Printable(problem));
    QString text = QStringLiteral("\n\n") + head;
    for (const QString &problem : problems.first(std::min(namedAtMost, problems.size())))
        text += QStringLiteral("\n- ") + problem.simplified();
    if (problems.size() > namedAtMost)
        text += QLatin1Char('\n') + textFor("IDS_AND_%1_MORE").arg(problems.size() - namedAtMost);
    return text;
}

QString reportText(const Report &report)
{
    QString text;
    for (const QString &sentence : sentencesOf(report)) {
        qWarning("%s", qUtf8Printable(sentence));
        text += QLatin1Char('\n') + sentence;
    }
    return text.isEmpty() ? text : QLatin1Char('\n') + text;
}
