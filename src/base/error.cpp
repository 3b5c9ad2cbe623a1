#include "base/error.h"

Error::Error(const QString &sentence) : std::runtime_error(sentence.toStdString()) {}

QString Error::sentence() const
{
    return QString::fromUtf8(what());
}

Error Error::withContext(const QString &context) const
{
    return Error(context + QStringLiteral(": ") + sentence());
}
