#include "sample/heic_writer.h"

#include "base/error.h"

#include <libheif/heif.h>

#include <memory>

namespace sample {

namespace {
constexpr int quality = 60;

template <auto release>
struct Release
{
    template <typename T>
    void operator()(T *object) const
    {
        release(object);
    }
};
using Context = std::unique_ptr<heif_context, Release<heif_context_free>>;
using Encoder = std::unique_ptr<heif_encoder, Release<heif_encoder_release>>;
using Picture = std::unique_ptr<heif_image, Release<heif_image_release>>;
using Options = std::unique_ptr<heif_encoding_options, Release<heif_encoding_options_free>>;
using Handle = std::unique_ptr<heif_image_handle, Release<heif_image_handle_release>>;

void require(const heif_error &error)
{
    if (error.code != heif_error_Ok)
        throw Error(
            QStringLiteral("The HEIC picture could not be made. %1").arg(QString::fromUtf8(error.message)));
}

Picture pixelsOf(const QImage &image)
{
    const QImage rgba = image.convertToFormat(QImage::Format_RGBA8888);
    const bool hasAlpha = image.hasAlphaChannel();
    heif_image *raw = nullptr;
    require(heif_image_create(rgba.width(), rgba.height(), heif_colorspace_RGB,
                              hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, &raw));
    Picture picture(raw);
    require(heif_image_add_plane(raw, heif_channel_interleaved, rgba.width(), rgba.height(), 8));
    int stride = 0;
    uint8_t *plane = heif_image_get_plane(raw, heif_channel_interleaved, &stride);
    const int units = hasAlpha ? 4 : 3;
    for (int y = 0; y < rgba.height(); ++y)
        for (int x = 0; x < rgba.width(); ++x)
            for (int unit = 0; unit < units; ++unit)
                plane[y * stride + x * units + unit] = rgba.constScanLine(y)[x * 4 + unit];
    return picture;
}

heif_error append(heif_context *, const void *data, std::size_t size, void *target)
{
    static_cast<QByteArray *>(target)->append(static_cast<const char *>(data), static_cast<qsizetype>(size));
    return {heif_error_Ok, heif_suberror_Unspecified, "Success"};
}
} // namespace

QByteArray heicOf(const QImage &image, const HeicForm &form)
{
    const Context context(heif_context_alloc());
    heif_encoder *rawEncoder = nullptr;
    require(heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &rawEncoder));
    const Encoder encoder(rawEncoder);
    require(heif_encoder_set_lossy_quality(encoder.get(), quality));
    require(heif_encoder_set_parameter_string(encoder.get(), "preset", "ultrafast"));

    const Options options(heif_encoding_options_alloc());
    options->image_orientation = static_cast<heif_orientation>(form.exifOrientation);
    const Picture picture = pixelsOf(image);
    heif_image_handle *rawHandle = nullptr;
    require(
        heif_context_encode_image(context.get(), picture.get(), encoder.get(), options.get(), &rawHandle));
    const Handle handle(rawHandle);
    if (form.smallerSide > 0) {
        heif_image_handle *rawSmaller = nullptr;
        require(heif_context_encode_thumbnail(context.get(), picture.get(), handle.get(), encoder.get(),
                                              options.get(), form.smallerSide, &rawSmaller));
        const Handle smaller(rawSmaller);
    }
    QByteArray bytes;
    heif_writer writer{1, &append};
    require(heif_context_write(context.get(), &writer, &bytes));
    return bytes;
}

} // namespace sample
