#include "work/video_frame.h"

#include "base/limited_process.h"
#include "export/picture_reader.h"

#include <QStandardPaths>

namespace {
constexpr int longestMs = 5000;
constexpr qint64 mostOutputBytes = 4 << 20;           // one small picture
constexpr quint64 mostMemoryBytes = quint64{3} << 29; // 1.5 GB

/// The reader is named, not guessed from the content: a playlist in a video's clothes could make the program
/// open other files or the network.
QStringList arguments(const QString &path, int side)
{
    const QString scale =
        QStringLiteral("scale='min(%1,iw)':'min(%1,ih)':force_original_aspect_ratio=decrease").arg(side);
    return {QStringLiteral("-v"),           QStringLiteral("error"),
            QStringLiteral("-threads"),     QStringLiteral("1"),
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
} // namespace

QImage firstFrameOf(const QString &path, int side, Progress &progress)
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (program.isEmpty())
        return {};
    const std::optional<QByteArray> frame = outputOf({.program = program,
                                                      .arguments = arguments(path, side),
                                                      .mostOutputBytes = mostOutputBytes,
                                                      .mostMemoryBytes = mostMemoryBytes,
                                                      .longestMs = longestMs},
                                                     &progress);
    return frame ? readPicture(*frame, {PictureFit::Within, {side, side}}).image : QImage();
}
