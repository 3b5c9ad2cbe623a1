#include "fuzz_input.h"

#include "export/picture_filter.h"
#include "export/picture_reader.h"

namespace {
constexpr qint64 quickPixels = 1 << 20;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView file = fuzzInput(data, size);
    const FilteredPicture picture = filteredPicture(file);
    if (picture.bytes.isEmpty() || picture.format == "heif") // which another program decodes
        return 0;
    require(isPictureSize(picture.size), "what is kept is of a picture's size");
    require(picture.bytes.size() <= file.size() + 1, "nothing grows but by an end mark");
    const FilteredPicture again = filteredPicture(picture.bytes);
    require(again.bytes == picture.bytes && again.size == picture.size, "what is kept once is kept again");
    if (qint64{picture.size.width()} * picture.size.height() <= quickPixels) {
        const QSize bounds(16, 16);
        const QImage image = readPicture(file.toByteArray(), {PictureFit::Within, bounds}).image;
        require(image.width() <= bounds.width() && image.height() <= bounds.height(), "bounds are kept");
    }
    return 0;
}
