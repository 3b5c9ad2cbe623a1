#include "sample/media_content.h"

#include "base/error.h"
#include "sample/heic_writer.h"

#include <QBuffer>
#include <QImage>
#include <QtEndian>

namespace sample {

namespace {

/// One box of an MPEG-4 file: length, kind, content.
QByteArray box(const char *kind, const QByteArray &content)
{
    QByteArray length(4, Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(content.size() + 8), length.data());
    return length + kind + content;
}

/// A movie header of no tracks: creation and change times, 1000 units a second, a duration, rate 1.0,
/// volume 1.0.
QByteArray movieBox()
{
    QByteArray header = QByteArray::fromHex("00000000 00000000 00000000 000003e8 00000bb8 00010000 0100");
    header += QByteArray(10, '\0');
    header += QByteArray::fromHex(
        "00010000 00000000 00000000 00000000 00010000 00000000 00000000 00000000 40000000");
    header += QByteArray(24, '\0') + QByteArray::fromHex("00000001");
    return box("moov", box("mvhd", header));
}

QImage colouredRings(int width, int height, SeededGenerator &chance)
{
    QImage image(width, height, QImage::Format_RGB32);
    const int centreX = chance.below(width);
    const int centreY = chance.below(height);
    const int red = chance.below(256);
    const int spread = 3 + chance.below(12);
    for (int y = 0; y < height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const int distance = (x - centreX) * (x - centreX) + (y - centreY) * (y - centreY);
            line[x] = qRgb((red + distance / spread / 16) & 0xFF, y * 255 / height, x * 255 / width);
        }
    }
    return image;
}

} // namespace

QByteArray picture(const char *format, int width, int height, SeededGenerator &chance)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!colouredRings(width, height, chance).save(&buffer, format, 80))
        throw Error(QStringLiteral("This Qt writes no %1 pictures.").arg(QLatin1String(format)));
    return buffer.data();
}

QByteArray heicPicture(int width, int height, SeededGenerator &chance)
{
    return heicOf(colouredRings(width, height, chance), {.smallerSide = 160});
}

QByteArray heicHead(SeededGenerator &chance)
{
    return box("ftyp", QByteArray("heic\0\0\0\0mif1heic", 16)) + box("mdat", chance.bytes(400));
}

QByteArray movie(SeededGenerator &chance)
{
    return box("ftyp", QByteArray("qt  \0\0\0\0qt  ", 12)) + movieBox() + box("mdat", chance.bytes(2000));
}

QByteArray mpegAudio(SeededGenerator &chance)
{
    return box("ftyp", QByteArray("M4A \0\0\0\0M4A mp42isom", 20)) + movieBox() +
           box("mdat", chance.bytes(1500));
}

QByteArray amrAudio(int seconds)
{
    // A frame of 20 ms at 4.75 kbit/s: the header byte and 12 bytes.
    const QByteArray silence = QByteArray::fromHex("04") + QByteArray(12, '\0');
    return "#!AMR\n" + silence.repeated(seconds * 50);
}

QByteArray pdfDocument(const QByteArray &asciiText)
{
    const QByteArray drawing = "BT /F1 24 Tf 72 720 Td (" + asciiText + ") Tj ET";
    const QByteArrayList objects = {
        "<</Type/Catalog/Pages 2 0 R>>",
        "<</Type/Pages/Kids[3 0 R]/Count 1>>",
        "<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Contents 4 0 R/Resources<</Font<</F1 5 0 R>>>>>>",
        "<</Length " + QByteArray::number(drawing.size()) + ">>\nstream\n" + drawing + "\nendstream",
        "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>",
    };
    QByteArray pdf = "%PDF-1.4\n";
    QByteArray table = "0000000000 65535 f \n";
    for (qsizetype i = 0; i < objects.size(); ++i) {
        table += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const QByteArray start = QByteArray::number(pdf.size());
    return pdf + "xref\n0 6\n" + table + "trailer\n<</Size 6/Root 1 0 R>>\nstartxref\n" + start + "\n%%EOF\n";
}

QByteArray vcard(const QByteArray &name, const QByteArray &phone, const QByteArray &jpeg)
{
    QByteArray card = "BEGIN:VCARD\r\nVERSION:3.0\r\nN:" + name + ";;;;\r\nFN:" + name +
                      "\r\nTEL;type=CELL;type=VOICE;type=pref:" + phone + "\r\n";
    if (!jpeg.isEmpty()) {
        const QByteArray text = "PHOTO;ENCODING=b;TYPE=JPEG:" + jpeg.toBase64();
        // A line is folded after 75 bytes, the blank that continues it included.
        card += text.left(75) + "\r\n";
        for (qsizetype at = 75; at < text.size(); at += 74)
            card += ' ' + text.mid(at, 74) + "\r\n";
    }
    return card + "END:VCARD\r\n";
}

} // namespace sample
