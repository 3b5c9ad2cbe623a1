#include "base/log.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <cstdlib>

namespace {
struct LogState
{
    QString folder;
    DebugEcho echo = DebugEcho::ToStandardOutput;
};

LogState &state()
{
    static LogState log;
    return log;
}

QString lineHead(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("D ");
    case QtWarningMsg:
        return QStringLiteral("W ");
    case QtCriticalMsg:
        return QStringLiteral("C ");
    case QtFatalMsg:
        return QStringLiteral("F ");
    default:
        return {};
    }
}
} // namespace

void initLog(const QString &folder, int keep, DebugEcho echo)
{
    state() = {folder, echo};
    QDir dir(folder);
    const QStringList files = dir.entryList(QDir::Files, QDir::Name);
    for (qsizetype i = 0; i < files.size() - keep; ++i)
        dir.remove(files.at(i));
    qInstallMessageHandler(logMessage);
}

void logMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDir folder(state().folder);
    folder.mkpath(QStringLiteral("."));
    QFile file(folder.filePath(QStringLiteral("log-%1.txt").arg(now.toString(QStringLiteral("yyyyMMdd")))));
    if (file.open(QIODevice::Append | QIODevice::WriteOnly, QFile::ReadOwner | QFile::WriteOwner)) {
        const QString line = QLatin1Char('(') + lineHead(type) + now.toString(QStringLiteral("hh:mm:ss")) +
                             QStringLiteral(") ") + text + QLatin1Char('\n');
        file.write(line.toUtf8());
    }
    if (type == QtDebugMsg && state().echo == DebugEcho::ToStandardOutput) {
        std::printf("%s\n", text.toUtf8().constData());
        std::fflush(stdout);
    }
    if (type == QtFatalMsg) {
        file.close();
        std::abort();
    }
}
