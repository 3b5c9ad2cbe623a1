#include "export/heif_process.h"

#include "base/limited_process.h"
#include "export/picture_filter.h"
#include "export/raw_picture.h"

#include <QCoreApplication>
#include <QDir>

namespace {
constexpr qint64 mostOutputBytes = mostPicturePixels * 4 + (16 << 20);
constexpr quint64 mostMemoryBytes = quint64{3} << 29; // 1.5 GB
constexpr int longestMs = 20000;

QString decoderProgram()
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("quillbarrow-heif"));
}
} // namespace

QImage readHeif(const QByteArray &bytes, const PictureFit &fit)
{
    const std::optional<QByteArray> raw =
        outputOf({.program = decoderProgram(),
                  .arguments = {QString::number(fit.kind), QString::number(fit.bounds.width()),
                                QString::number(fit.bounds.height())},
                  .input = bytes,
                  .mostOutputBytes = mostOutputBytes,
                  .mostMemoryBytes = mostMemoryBytes,
                  .longestMs = longestMs});
    return raw ? imageOfRaw(*raw) : QImage();
}
