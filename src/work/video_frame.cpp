#include "work/video_frame.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>

namespace {
constexpr qint64 longestMs = 5000;
constexpr int pollMs = 50;

/// The reader is named, not guessed from the content: a playlist in a video's clothes could make the program
/// open other files or the network.
QStringList arguments(const QString &path, int side)
{
    const QString scale =
        QStringLiteral("scale='min(%1,iw)':'min(%1,ih)':force_original_aspect_ratio=decrease").arg(side);
    return {QStringLiteral("-v"),           QStringLiteral("error"),
            QStringLiteral("-nostdin"),     QStringLiteral("-protocol_whitelist"),
            QStringLiteral("file,pipe"),    QStringLiteral("-f"),
            QStringLiteral("mov"),          QStringLiteral("-i"),
            QStringLiteral("file:") + path, QStringLiteral("-an"),
            QStringLiteral("-frames:v"),    QStringLiteral("1"),
            QStringLiteral("-vf"),          scale,
            QStringLiteral("-c:v"),         QStringLiteral("mjpeg"),
            QStringLiteral("-f"),           QStringLiteral("image2pipe"),
            QStringLiteral("pipe:1")};
}

/// Kills the program when it is still running at the end.
class Killed : public QProcess
{
public:
    ~Killed() override
    {
        if (state() != NotRunning) {
            kill();
            waitForFinished(-1);
        }
    }
};
} // namespace

QImage firstFrameOf(const QString &path, int side, Progress &progress)
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (program.isEmpty())
        return {};
    Killed process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments(path, side));
    QElapsedTimer elapsed;
    elapsed.start();
    while (!process.waitForFinished(pollMs)) {
        progress.check();
        if (process.state() == QProcess::NotRunning || elapsed.elapsed() > longestMs)
            return {};
    }
    return QImage::fromData(process.readAllStandardOutput(), "JPEG");
}
