#include "views/local_number.h"

#include <QLocale>

QString localNumber(qint64 value)
{
    return QLocale::system().toString(value);
}
