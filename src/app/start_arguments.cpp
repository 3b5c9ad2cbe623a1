#include "app/start_arguments.h"

#include "base/texts.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

namespace {
constexpr int wrongUsage = 2;

// Those of the toolkit, which takes them out of the list itself.
const char *const toolkitSwitches[] = {"reverse", "widgetcount"};
const char *const toolkitValues[] = {
    "platform",    "platformpluginpath", "platformtheme", "plugin", "qmljsdebugger", "qwindowgeometry",
    "qwindowicon", "qwindowtitle",       "session",       "style",  "stylesheet",    "display",
    "geometry"};

template <typename Names>
bool isAmong(const QString &name, const Names &names)
{
    return std::any_of(std::begin(names), std::end(names),
                       [&name](const char *known) { return name == QLatin1String(known); });
}

/// The first argument that neither this program nor the toolkit knows; empty when there is none.
QString unknownArgument(const QStringList &arguments)
{
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (!argument.startsWith(QLatin1Char('-')))
            return argument;
        const QString option = argument.mid(argument.startsWith(QLatin1String("--")) ? 2 : 1);
        const QString name = option.section(QLatin1Char('='), 0, 0);
        if (isAmong(name, toolkitValues))
            i += option.contains(QLatin1Char('=')) ? 0 : 1;
        else if (!isAmong(name, toolkitSwitches))
            return argument;
    }
    return {};
}

void print(FILE *stream, const QString &text)
{
    std::fputs(qPrintable(text + QLatin1Char('\n')), stream);
}
} // namespace

std::optional<int> answerArguments(int argc, char **argv)
{
    if (argc < 2)
        return std::nullopt;
    const QCoreApplication forTexts(argc, argv);
    installTexts();
    const QStringList arguments = QCoreApplication::arguments();
    const auto has = [&arguments](const char *option, const char *shortOption) {
        return arguments.contains(QLatin1String(option)) || arguments.contains(QLatin1String(shortOption));
    };
    if (has("--help", "-h")) {
        print(stdout, textFor("IDS_WINDOW_USAGE"));
        return 0;
    }
    if (has("--version", "-v")) {
        print(stdout, QStringLiteral(QB_VERSION));
        return 0;
    }
    const QString unknown = unknownArgument(arguments);
    if (unknown.isEmpty())
        return std::nullopt;
    print(stderr, textFor("IDS_UNKNOWN_ARGUMENT_%1").arg(unknown));
    return wrongUsage;
}
