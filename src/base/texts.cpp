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

// Qt takes an int: beyond it, any other large number has the same form.
QString textFor(const char *key, qint64 number)
{
    constexpr qint64 largest = 2'000'000'000;
    if (number <= largest)
        return QCoreApplication::translate("", key, nullptr, static_cast<int>(number));
    return QCoreApplication::translate("", key, nullptr, static_cast<int>(largest))
        .replace(QString::number(largest), QString::number(number));
}
