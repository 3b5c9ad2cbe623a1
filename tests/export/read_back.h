#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

/// What an independent reader makes of files.
inline QJsonDocument readWith(const char *script, const QStringList &paths)
{
    QProcess python;
    python.start(qEnvironmentVariable("PYTHON"),
                 QStringList{QStringLiteral(TEST_TOOLS "/") + QLatin1String(script)} + paths);
    if (!python.waitForFinished() || python.exitCode() != 0)
        qWarning("%s", python.readAllStandardError().constData());
    return QJsonDocument::fromJson(python.readAllStandardOutput());
}

inline QStringList strings(const QJsonValue &array)
{
    QStringList result;
    for (const QJsonValue &value : array.toArray())
        result += value.toString();
    return result;
}
