#include "export/emoji_picture.h"

#include "export/html_text.h"
#include "export/softbank_emoji.h"

#include <QBuffer>
#include <QFont>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>

#include <algorithm>
#include <iterator>

namespace {
// Shown at about 20 pixels, so it stays sharp on screens with three device pixels to each.
constexpr int sidePixels = 72;
// The colour fonts draw a little wider than their nominal size.
constexpr int fontPixels = 60;

QString installedEmojiFamily()
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

QImage emptyPicture(int side = sidePixels)
{
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

/// What is not transparent in a picture.
QRect drawnPart(const QImage &picture)
{
    QRect part;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        const auto isDrawn = [](QRgb pixel) { return qAlpha(pixel) != 0; };
        const QRgb *end = line + picture.width();
        const QRgb *first = std::find_if(line, end, isDrawn);
        if (first == end)
            continue;
        const QRgb *last =
            std::find_if(std::make_reverse_iterator(end), std::make_reverse_iterator(first), isDrawn).base();
        part |= QRect(static_cast<int>(first - line), y, static_cast<int>(last - first), 1);
    }
    return part;
}

/// Where a colour font draws is found by looking: its measures are those of whichever size was last in use.
void drawFromFont(QImage &picture, const QString &text, const QFont &font)
{
    QImage sheet = emptyPicture(3 * sidePixels);
    QPainter onSheet(&sheet);
    onSheet.setFont(font);
    onSheet.drawText(QPointF(sidePixels, 2 * sidePixels), text);
    onSheet.end();
    const QRect part = drawnPart(sheet);
    if (part.isEmpty())
        return;

    QSizeF size = part.size();
    if (part.width() > sidePixels || part.height() > sidePixels)
        size.scale(sidePixels, sidePixels, Qt::KeepAspectRatio);
    QRectF target({}, size);
    target.moveCenter(QRectF(picture.rect()).center());
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, sheet, part);
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

QString colourEmojiFamily()
{
    static const QString family = installedEmojiFamily();
    return family;
}

QImage emojiPicture(const QString &text)
{
    QImage picture = emptyPicture();
    const QString family = colourEmojiFamily();
    if (!family.isEmpty() && !text.isEmpty()) {
        QFont font(family);
        font.setPixelSize(fontPixels);
        font.setStyleStrategy(QFont::NoFontMerging);
        const uint first = text.toUcs4().first();
        if (QRawFont::fromFont(font).supportsCharacter(first))
            drawFromFont(picture, text, font);
    }
    return drawnPart(picture).isEmpty() ? QImage() : picture;
}

QByteArray emojiPng(char32_t key)
{
    QString text = modernEmojiOf(key);
    if (text.isEmpty())
        text = QString::fromUcs4(&key, 1);

    QImage picture = emojiPicture(text);
    if (picture.isNull()) {
        picture = emptyPicture();
        drawCodePoint(picture, key);
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return png;
}
