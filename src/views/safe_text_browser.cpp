#include "views/safe_text_browser.h"

#include "export/picture_reader.h"

namespace {
// More than a screen shows of a text, and little enough for a text of many pictures.
constexpr QSize largestShown(2048, 2048);
constexpr qsizetype mostShownBytes = 256 << 20;

QImage embeddedPicture(const QString &address)
{
    const qsizetype comma = address.indexOf(QLatin1Char(','));
    if (comma < 0 || !address.left(comma).endsWith(QLatin1String(";base64")))
        return {};
    return readPicture(QByteArray::fromBase64(address.mid(comma + 1).toLatin1()),
                       {PictureFit::Within, largestShown})
        .image;
}
} // namespace

SafeTextBrowser::SafeTextBrowser(QWidget *parent) : QTextBrowser(parent)
{
    setOpenLinks(false);
    setOpenExternalLinks(false);
    setFrameShape(QFrame::NoFrame);
}

void SafeTextBrowser::showHtml(const QString &html)
{
    m_pictureBytes = 0;
    setHtml(html);
}

QVariant SafeTextBrowser::loadResource(int type, const QUrl &name)
{
    if (type != QTextDocument::ImageResource || name.scheme() != QLatin1String("data") ||
        m_pictureBytes > mostShownBytes)
        return {};
    const QImage picture = embeddedPicture(name.toString(QUrl::FullyEncoded));
    m_pictureBytes += picture.sizeInBytes();
    return picture;
}
