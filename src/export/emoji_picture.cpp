#include "export/emoji_picture.h"

#include "export/html_text.h"
#include "export/softbank_emoji.h"

#include <QBuffer>
#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>

namespace {
// Shown at about 20 pixels, so it stays sharp on screens with three device pixels to each.
constexpr int sidePixels = 72;
// The colour fonts draw a little wider than their nominal size.
constexpr int fontPixels = 60;

QString colourEmojiFamily()
{
    const QStringList installed = QFontDatabase::families();
    for (const char *family : {"Apple Color Emoji", "Segoe UI Emoji", "Noto Color Emoji", "Twemoji",
                               "Twitter Color Emoji", "JoyPixels", "Noto Emoji"})
        if (installed.contains(QLatin1String(family)))
            return QLatin1String(family);
    for (const QString &family : installed)
        if (family.contains(QLatin1String("emoji"), Qt::CaseInsensitive))
            return family;
    return {};
}

QImage emptyPicture()
{
    QImage picture(sidePixels, sidePixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

void drawFromFont(QImage &picture, const QString &text, const QFont &font)
{
    const QRectF bounds = QFontMetricsF(font).boundingRect(text);
    const qreal widest = std::max(bounds.width(), bounds.height());
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    painter.translate(sidePixels / 2.0, sidePixels / 2.0);
    if (widest > sidePixels)
        painter.scale(sidePixels / widest, sidePixels / widest);
    painter.setFont(font);
    painter.drawText(-bounds.center(), text);
}

bool isBlank(const QImage &picture)
{
    const auto *pixels = reinterpret_cast<const quint32 *>(picture.constBits());
    return std::all_of(pixels, pixels + picture.sizeInBytes() / 4, [](quint32 pixel) { return pixel == 0; });
}

void drawCodePoint(QImage &picture, char32_t key)
{
    const QString code = QString::fromLatin1(emojiName(key));
    // Two lines, as the code point would not be readable in one.
    const qsizetype half = (code.size() + 1) / 2;
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0x7a, 0x8a, 0x88), 4));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(3, 3, sidePixels - 6, sidePixels - 6), 10, 10);
    QFont font;
    font.setPixelSize(25);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor(0x3d, 0x4a, 0x48));
    painter.drawText(picture.rect(), Qt::AlignCenter, code.left(half) + QLatin1Char('\n') + code.mid(half));
}
} // namespace

QByteArray emojiPng(char32_t key)
{
    QString text = modernEmojiOf(key);
    if (text.isEmpty())
        text = QString::fromUcs4(&key, 1);

    QImage picture = emptyPicture();
    static const QString family = colourEmojiFamily();
    if (!family.isEmpty()) {
        QFont font(family);
        font.setPixelSize(fontPixels);
        font.setStyleStrategy(QFont::NoFontMerging);
        const uint first = text.toUcs4().first();
        if (QRawFont::fromFont(font).supportsCharacter(first))
            drawFromFont(picture, text, font);
    }
    if (isBlank(picture))
        drawCodePoint(picture, key);

    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return png;
}
