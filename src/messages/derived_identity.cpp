#include "messages/derived_identity.h"

#include <QCryptographicHash>
#include <QUuid>
#include <QtEndian>

QString guidFrom(const QString &text)
{
    return QUuid::createUuidV5(QUuid(), text.toUtf8()).toString(QUuid::WithoutBraces).toUpper();
}

QString groupIdentifierFrom(const QString &text)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1);
    return QStringLiteral("chat") + QString::number(qFromBigEndian<quint64>(hash.constData()));
}
