#pragma once

#include <QByteArray>
#include <QImage>

#include <memory>

struct heif_context;
struct heif_image_handle;

/// The main picture of an HEIF file: HEIC, which iPhones write, or AVIF. What such a file is put together
/// from is not bounded here: the program that uses this runs under limits, see heif_process.h.
class HeifPicture
{
public:
    /// Null when the file, which must live as long, is none or is damaged where it says what is in it.
    static std::unique_ptr<HeifPicture> open(const QByteArray &file);

    /// Upright, in pixels; what the file says, which may be anything.
    QSize size() const;

    /// The picture scaled to `size`, upright. A smaller version of the picture in the same file is decoded
    /// instead when it is large enough. Null when the content is damaged.
    QImage read(QSize size) const;

private:
    struct Free
    {
        void operator()(heif_context *context) const;
        void operator()(const heif_image_handle *handle) const;
    };
    using Context = std::unique_ptr<heif_context, Free>;
    using Handle = std::unique_ptr<heif_image_handle, Free>;

    HeifPicture(Context context, Handle handle);
    Handle smallerVersion(QSize size) const;

    Context m_context;
    Handle m_handle;
};
