#include "export/heif_picture.h"

#include <QColorSpace>

#include <libheif/heif.h>

#include <algorithm>
#include <vector>

namespace {
// A header may claim one size and the pictures that it is put together from another; the library holds all of
// them to this. The widest panoramas of telephones stay below it.
constexpr int largestSide = 16384;

struct FreeImage
{
    void operator()(const heif_image *image) const { heif_image_release(image); }
};
using DecodedImage = std::unique_ptr<heif_image, FreeImage>;

bool succeeded(const heif_error &error)
{
    return error.code == heif_error_Ok;
}

QSize sizeOf(const heif_image_handle *handle)
{
    return {heif_image_handle_get_width(handle), heif_image_handle_get_height(handle)};
}

QColorSpace colourSpaceOf(const heif_image_handle *handle)
{
    QByteArray profile(static_cast<qsizetype>(heif_image_handle_get_raw_color_profile_size(handle)), '\0');
    if (profile.isEmpty() || !succeeded(heif_image_handle_get_raw_color_profile(handle, profile.data())))
        return {};
    return QColorSpace::fromIccProfile(profile);
}

QImage decoded(const heif_image_handle *handle)
{
    const bool hasAlpha = heif_image_handle_has_alpha_channel(handle) != 0;
    const std::unique_ptr<heif_decoding_options, decltype(&heif_decoding_options_free)> options(
        heif_decoding_options_alloc(), &heif_decoding_options_free);
    options->convert_hdr_to_8bit = 1;
    heif_image *raw = nullptr;
    const heif_error error = heif_decode_image(
        handle, &raw, heif_colorspace_RGB,
        hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, options.get());
    const DecodedImage image(raw);
    if (!succeeded(error))
        return {};
    int stride = 0;
    const uint8_t *pixels = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
    const int width = heif_image_get_width(image.get(), heif_channel_interleaved);
    const int height = heif_image_get_height(image.get(), heif_channel_interleaved);
    const QImage view(pixels, width, height, stride,
                      hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    QImage result = pixels ? view.copy() : QImage();
    result.setColorSpace(colourSpaceOf(handle));
    return result;
}
} // namespace

void HeifPicture::Free::operator()(heif_context *context) const
{
    heif_context_free(context);
}

void HeifPicture::Free::operator()(const heif_image_handle *handle) const
{
    heif_image_handle_release(handle);
}

HeifPicture::HeifPicture(Context context, Handle handle)
    : m_context(std::move(context)), m_handle(std::move(handle))
{
}

std::unique_ptr<HeifPicture> HeifPicture::open(const QByteArray &file)
{
    Context context(heif_context_alloc());
    heif_context_set_maximum_image_size_limit(context.get(), largestSide);
    if (!succeeded(heif_context_read_from_memory_without_copy(
            context.get(), file.constData(), static_cast<std::size_t>(file.size()), nullptr)))
        return nullptr;
    heif_image_handle *raw = nullptr;
    const heif_error error = heif_context_get_primary_image_handle(context.get(), &raw);
    Handle handle(raw);
    if (!succeeded(error))
        return nullptr;
    return std::unique_ptr<HeifPicture>(new HeifPicture(std::move(context), std::move(handle)));
}

QSize HeifPicture::size() const
{
    return sizeOf(m_handle.get());
}

HeifPicture::Handle HeifPicture::smallerVersion(QSize size) const
{
    std::vector<heif_item_id> ids(
        static_cast<std::size_t>(std::max(0, heif_image_handle_get_number_of_thumbnails(m_handle.get()))));
    ids.resize(static_cast<std::size_t>(heif_image_handle_get_list_of_thumbnail_IDs(
        m_handle.get(), ids.data(), static_cast<int>(ids.size()))));
    const QSize whole = this->size();
    for (const heif_item_id id : ids) {
        heif_image_handle *raw = nullptr;
        if (!succeeded(heif_image_handle_get_thumbnail(m_handle.get(), id, &raw)))
            continue;
        Handle handle(raw);
        const QSize there = sizeOf(raw);
        // One that lies on its side while the picture stands would come out distorted.
        const bool sameWay = (there.width() >= there.height()) == (whole.width() >= whole.height());
        const bool smaller = there.width() <= whole.width() && there.height() <= whole.height();
        if (sameWay && smaller && there.width() >= size.width() && there.height() >= size.height())
            return handle;
    }
    return nullptr;
}

QImage HeifPicture::read(QSize size) const
{
    QImage image;
    if (const Handle smaller = smallerVersion(size))
        image = decoded(smaller.get());
    if (image.isNull())
        image = decoded(m_handle.get());
    if (image.isNull() || image.size() == size)
        return image;
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}
