#include "app/web_pages.h"

QString homePage()
{
    return QStringLiteral("https://quillbarrow.example/");
}

QString helpPage()
{
    return homePage() + QStringLiteral("help");
}

QString feedbackPage()
{
    return homePage() + QStringLiteral("support");
}

QString commandLinePage()
{
    return homePage() + QStringLiteral("command-line");
}
