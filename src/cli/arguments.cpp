#include "cli/arguments.h"

#include <CLI/CLI.hpp>

CLI::Option *addValue(CLI::App &command, const char *name, const char *description)
{
    return command.add_option(name, CLI::callback_t(), description)->allow_extra_args(false);
}

CLI::Option *addValues(CLI::App &command, const char *name, const char *description)
{
    return addValue(command, name, description)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

CLI::Option *addPositional(CLI::App &command, const char *name, const char *description)
{
    return addValue(command, name, description)->required();
}

CLI::Option *addSwitch(CLI::App &command, const char *name, const char *description)
{
    return command.add_flag(name)->description(description);
}

bool isGiven(const CLI::Option *option)
{
    return option->count() > 0;
}

QStringList valuesOf(const CLI::Option *option)
{
    QStringList values;
    for (const std::string &value : option->results())
        values << QString::fromStdString(value);
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

void wrongUsage(const QString &sentence)
{
    throw CLI::ValidationError(sentence.toStdString());
}
