#pragma once

#include "cli/output.h"
#include "cli/progress_bar.h"

#include <QString>

#include <functional>
#include <stdexcept>

class Report;

/// How the process ends; other programs rely on the numbers.
enum class ExitStatus { Done = 0, Failed = 1, WrongUsage = 2, PasswordNeeded = 3 };

/// A password is needed and there is none, or the one given is wrong. Carries one sentence.
class PasswordError : public std::runtime_error
{
public:
    explicit PasswordError(const QString &sentence) : std::runtime_error(sentence.toStdString()) {}
};

/// What a command works with while it runs.
struct CommandContext
{
    Output &out;
    ProgressBar &progress;
    /// One line on standard error.
    std::function<void(const QString &)> tell;

    /// Tells a report, a line for each kind of issue. Failed when something was damaged or not handed over.
    ExitStatus report(const Report &report) const;
    /// The same of what is a failure alone.
    ExitStatus reportProblems(const Report &report) const;
};

/// What a command line asked for, once it has been understood.
struct Job
{
    std::function<ExitStatus(CommandContext &)> run;
    bool needsPictures = false; // fonts and images: a GUI application, without a screen
};
