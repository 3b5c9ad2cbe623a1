#include "views/safe_text_browser.h"

#include <QImage>
#include <QImageReader>
#include <QBuffer>

namespace {
constexpr int largestSide = 4096;

QImage embeddedPicture(const QString &address)
{
    const qsizetype comma = address.indexOf(QLatin1Char(','));
    if (comma < 0 || !address.left(comma).endsWith(QLatin1String(";base64")))
        return {};
    QBuffer buffer;
    buffer.setData(QByteArray::fromBase64(address.mid(comma + 1).toLatin1()));
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    return size.isValid() && size.width() <= largestSide && size.height() <= largestSide ? reader.read()
                                                                                         : QImage();
}
} // namespace

SafeTextBrowser::SafeTextBrowser(QWidget *parent) : QTextBrowser(parent)
{
    setOpenLinks(false);
    setOpenExternalLinks(false);
    setFrameShape(QFrame::NoFrame);
}

QVariant SafeTextBrowser::loadResource(int type, const QUrl &name)
{
    if (type == QTextDocument::ImageResource && name.scheme() == QLatin1String("data"))
        return embeddedPicture(name.toString(QUrl::FullyEncoded));
    return {};
}
