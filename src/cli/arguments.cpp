#include "cli/arguments.h"

#include <CLI/CLI.hpp>

namespace {
// No argument of a process holds it.
constexpr char protection = '\0';
} // namespace

CLI::Option *addValue(CLI::App &command, const char *name, const char *description)
{
    return command.add_option(name, CLI::callback_t(), description)->allow_extra_args(false);
}

CLI::Option *addValues(CLI::App &command, const char *name, const char *description)
{
    return addValue(command, name, description)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

CLI::Option *addValueList(CLI::App &command, const char *name, const char *description)
{
    return addValues(command, name, description)->required()->expected(1, -1)->allow_extra_args();
}

CLI::Option *addPositional(CLI::App &command, const char *name, const char *description)
{
    return addValue(command, name, description)->required();
}

CLI::Option *addPositionals(CLI::App &command, const char *name, const char *description)
{
    return addPositional(command, name, description)->expected(1, -1)->allow_extra_args();
}

CLI::Option *addSwitch(CLI::App &command, const char *name, const char *description)
{
    return command.add_flag(name)->description(description);
}

bool isGiven(const CLI::Option *option)
{
    return option->count() > 0;
}

CLI::Option *addEverything(CLI::App &command)
{
    return addSwitch(command, "--everything", "also what is left out by rule, such as system items");
}

Scope scopeOf(const CLI::Option *everything)
{
    return isGiven(everything) ? Scope::Everything : Scope::Usual;
}

QStringList valuesOf(const CLI::Option *option)
{
    QStringList values;
    for (const std::string &value : option->results()) {
        const bool isProtected = !value.empty() && value.front() == protection;
        values << QString::fromStdString(isProtected ? value.substr(1) : value);
    }
    return values;
}

std::optional<QString> valueOf(const CLI::Option *option)
{
    const QStringList values = valuesOf(option);
    return values.isEmpty() ? std::nullopt : std::optional(values.last());
}

QList<qint64> numbersOf(const CLI::Option *option, qint64 least, qint64 most)
{
    QList<qint64> numbers;
    for (const QString &text : valuesOf(option)) {
        bool isNumber = false;
        const qint64 number = text.toLongLong(&isNumber);
        if (!isNumber || number < least || number > most)
            wrongUsage(QStringLiteral("%1: \"%2\" is not a whole number from %3 to %4")
                           .arg(QString::fromStdString(option->get_name()), text)
                           .arg(least)
                           .arg(most));
        numbers << number;
    }
    return numbers;
}

std::optional<qint64> numberOf(const CLI::Option *option, qint64 least, qint64 most)
{
    const QList<qint64> numbers = numbersOf(option, least, most);
    return numbers.isEmpty() ? std::nullopt : std::optional(numbers.last());
}

QByteArray pathOf(const QString &argument)
{
    QByteArray path = argument.toUtf8();
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

std::string protectedArgument(const QString &argument)
{
    const std::string text = argument.toStdString();
    return text.starts_with('[') ? protection + text : text;
}

void wrongUsage(const QString &sentence)
{
    throw CLI::ValidationError(sentence.toStdString());
}
