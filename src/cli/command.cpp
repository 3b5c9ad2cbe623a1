#include "cli/command.h"

#include "base/report.h"

ExitStatus CommandContext::report(const Report &report) const
{
    for (const QString &sentence : sentencesOf(report, EverythingHint::Option))
        tell(sentence);
    return report.isFailure() ? ExitStatus::Failed : ExitStatus::Done;
}

ExitStatus CommandContext::reportProblems(const Report &report) const
{
    for (const QString &problem : problemsOf(report))
        tell(problem);
    return report.isFailure() ? ExitStatus::Failed : ExitStatus::Done;
}
