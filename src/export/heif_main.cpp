// Decodes the HEIF picture on standard input and writes its pixels to standard output. Arguments: how large
// it is wanted, see PictureFit. It stands by itself so that whoever starts it can limit what a picture may
// use.

#include "export/heif_picture.h"
#include "export/picture_fit.h"
#include "export/picture_filter.h"
#include "export/raw_picture.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>

namespace {
enum : int { Done = 0, NotDecoded = 1, WrongUse = 2 };
}

int main(int argc, char **argv)
{
    if (argc != 4)
        return WrongUse;
    const PictureFit fit{static_cast<PictureFit::Kind>(std::atoi(argv[1])),
                         {std::atoi(argv[2]), std::atoi(argv[3])}};
    QFile in;
    QFile out;
    if (!in.open(stdin, QIODevice::ReadOnly) || !out.open(stdout, QIODevice::WriteOnly))
        return NotDecoded;
    const QByteArray file = in.readAll();
    const auto picture = HeifPicture::open(file);
    if (!picture || !isPictureSize(picture->size()))
        return NotDecoded;
    const QImage image = picture->read(fit.sizeOf(picture->size()));
    if (image.isNull())
        return NotDecoded;
    const QByteArray raw = rawOf(image);
    return out.write(raw) == raw.size() && out.flush() ? Done : NotDecoded;
}
