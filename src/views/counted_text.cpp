#include "views/counted_text.h"

#include "base/texts.h"

#include <QLocale>

QString localNumber(qint64 value)
{
    return QLocale::system().toString(value);
}

QString countedText(const char *one, const char *many, qint64 count)
{
    return count == 1 ? textFor(one) : textFor(many).arg(localNumber(count));
}
