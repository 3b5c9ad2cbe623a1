#include "base/texts.h"

#include <QCoreApplication>
#include <QTranslator>

void installTexts()
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(QStringLiteral(":/en.qm")))
        QCoreApplication::installTranslator(translator);
    else
        qWarning("the texts of the interface could not be loaded");
}

QString textFor(const char *key)
{
    return QCoreApplication::translate("", key);
}
