#include "export/emoji_picture.h"
#include "export/picture_reader.h"
#include "export/softbank_emoji.h"
#include "export/thumbnails.h"
#include "export/vcard_photo.h"
#include "sample/heic_writer.h"
#include "sample_messages.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>

namespace {
QByteArray picture(int width, int height, const char *format = "PNG", QRgb colour = 0xFF2B7A78)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

/// Left half red, right half blue.
QImage twoHalves(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, x < width / 2 ? 0xFFD00000 : 0xFF0000D0);
    return image;
}

/// A JPEG that says how it is to be turned, as cameras write it.
QByteArray turnedJpeg(const QImage &image, char exifOrientation)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG");
    const QByteArray exif = QByteArray::fromHex("457869660000"     // "Exif"
                                                "4d4d002a00000008" // big-endian, the directory follows
                                                "0001"             // of one entry: orientation, a short
                                                "0112000300000001") +
                            QByteArray(1, '\0') + exifOrientation + QByteArray(6, '\0');
    const auto length = static_cast<quint16>(exif.size() + 2);
    return bytes.insert(2, "\xFF\xE1" + QByteArray(1, char(length >> 8)) + char(length & 0xFF) + exif);
}

/// "red" or "blue", or neither.
QString colourAt(const QImage &image, double x, double y)
{
    const QColor colour = image.pixelColor(int(image.width() * x), int(image.height() * y));
    if (colour.red() > 120 && colour.blue() < 90)
        return QStringLiteral("red");
    return colour.blue() > 120 && colour.red() < 90 ? QStringLiteral("blue") : colour.name();
}

/// A HEIC that claims to be much larger than its pixels.
QByteArray claimingHeic(quint32 side)
{
    QByteArray bytes = sample::heicOf(twoHalves(64, 64));
    const QByteArray box = "ispe" + QByteArray(4, '\0');
    for (qsizetype at = bytes.indexOf(box); at >= 0; at = bytes.indexOf(box, at + 1))
        for (qsizetype i = 0; i < 8; ++i)
            bytes[at + 8 + i] = char(side >> (24 - 8 * (i % 4)));
    return bytes;
}

/// A PNG whose header claims another size than its pixels have.
QByteArray claiming(quint32 width, quint32 height)
{
    QByteArray bytes = picture(1, 1);
    const auto put = [&](qsizetype at, quint32 value) {
        for (int i = 0; i < 4; ++i)
            bytes[at + i] = char(value >> (24 - 8 * i));
    };
    put(16, width);
    put(20, height);
    // The chunk's check sum covers its type and content.
    quint32 crc = 0xFFFFFFFF;
    for (const char byte : bytes.mid(12, 17)) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320 & (0 - (crc & 1)));
    }
    put(29, ~crc);
    return bytes;
}

QString write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? path : QString();
}
} // namespace

class TestPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void thumbnail_data();
    void thumbnail();
    void readsUpright_data();
    void readsUpright();
    void smallerVersionInTheFileServes();
    void readsAnyKind_data();
    void readsAnyKind();
    void thumbnailIsKept();
    void thumbnailOfSomebodyElseIsNotUsed();
    void cardPhoto_data();
    void cardPhoto();
    void cardPicture();
    void emojiOfOldTelephones_data();
    void emojiOfOldTelephones();
    void everyEmojiHasAPicture_data();
    void everyEmojiHasAPicture();

private:
    QTemporaryDir m_folder;
    QTemporaryDir m_temporary;
};

void TestPictures::initTestCase()
{
    qputenv("TMPDIR", m_temporary.path().toUtf8());
    QCOMPARE(QDir::tempPath(), m_temporary.path());
}

void TestPictures::thumbnail_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QSize>("size"); // empty: none
    QTest::addColumn<QByteArray>("format");
    const QByteArray jpeg = "jpeg";
    const QByteArray png = "png";
    QTest::newRow("wide JPEG") << picture(400, 300, "JPEG") << QSize(120, 90) << jpeg;
    QTest::newRow("high PNG") << picture(300, 400) << QSize(90, 120) << png;
    QTest::newRow("square") << picture(500, 500) << QSize(120, 120) << png;
    QTest::newRow("small ones grow") << picture(20, 10) << QSize(120, 60) << png;
    QTest::newRow("a line keeps one pixel") << picture(3000, 1) << QSize(120, 1) << png;
    QTest::newRow("HEIC") << sample::heicOf(twoHalves(400, 300)) << QSize(120, 90) << jpeg;
    QTest::newRow("HEIC, stored on its side")
        << sample::heicOf(twoHalves(400, 300), {6, 160}) << QSize(90, 120) << jpeg;
    QImage clear(200, 200, QImage::Format_ARGB32);
    clear.fill(0x802B7A78);
    QTest::newRow("HEIC one can see through") << sample::heicOf(clear) << QSize(120, 120) << png;
    QTest::newRow("HEIC, ends in the middle")
        << sample::heicOf(twoHalves(400, 300)).chopped(60) << QSize() << QByteArray();
    QTest::newRow("HEIC, nothing but a head")
        << sample::heicOf(twoHalves(400, 300)).left(40) << QSize() << QByteArray();
    QTest::newRow("HEIC made to exhaust the memory") << claimingHeic(20000) << QSize() << QByteArray();
    QTest::newRow("another format") << picture(40, 30, "BMP") << QSize() << QByteArray();
    QTest::newRow("no picture") << QByteArray("GIF89a, or so it says") << QSize() << QByteArray();
    QTest::newRow("empty file") << QByteArray() << QSize() << QByteArray();
    QTest::newRow("made to exhaust the memory") << claiming(20000, 20000) << QSize() << QByteArray();
    QTest::newRow("made to overflow") << claiming(0x7FFFFFFF, 0x7FFFFFFF) << QSize() << QByteArray();
    QTest::newRow("ends in the middle") << picture(400, 300).left(60) << QSize() << QByteArray();
}

void TestPictures::thumbnail()
{
    QFETCH(QByteArray, file);
    QFETCH(QSize, size);
    // The suffix says nothing: telephones name pictures as they like.
    const QString path = write(m_folder.filePath(QLatin1String(QTest::currentDataTag()) + ".dat"), file);
    const std::optional<QString> made = thumbnailOf(path);
    QCOMPARE(made.has_value(), !size.isEmpty());
    if (!made)
        return;
    QCOMPARE(*made,
             m_temporary.filePath(QString::fromLatin1(
                 QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Md5).toHex() + ".thumb")));
    QImageReader reader(*made);
    QCOMPARE(reader.size(), size);
    QTEST(reader.format(), "format");
    QCOMPARE(QFile::permissions(*made) & ~(QFile::ReadUser | QFile::WriteUser),
             QFile::ReadOwner | QFile::WriteOwner);
    QVERIFY(
        QDir(m_temporary.path()).entryList({QStringLiteral("*.part")}, QDir::Files | QDir::Hidden).isEmpty());
}

void TestPictures::readsUpright_data()
{
    QTest::addColumn<QByteArray>("file");
    const QImage image = twoHalves(320, 200);
    QTest::newRow("JPEG") << turnedJpeg(image, 6);
    QTest::newRow("HEIC") << sample::heicOf(image, {6, 0});
    QTest::newRow("HEIC with a smaller version") << sample::heicOf(image, {6, 160});
}

/// A quarter turn clockwise puts the left side on top.
void TestPictures::readsUpright()
{
    QFETCH(QByteArray, file);
    const QString path = write(m_folder.filePath(QLatin1String(QTest::currentDataTag())), file);
    PictureReader reader(path);
    QCOMPARE(reader.size(), QSize(200, 320));
    for (const QImage &image : {reader.read(), readPictureWithin(path, QSize(50, 80)),
                                readPictureWithin(path, QSize(1000, 80)), thumbnailImage(path)}) {
        QCOMPARE(image.height() * 10 / image.width(), 16);
        QCOMPARE(colourAt(image, 0.5, 0.2), QStringLiteral("red"));
        QCOMPARE(colourAt(image, 0.5, 0.8), QStringLiteral("blue"));
    }
    QCOMPARE(readPictureWithin(path, QSize(50, 1000)).size(), QSize(50, 80));
    QCOMPARE(readPictureWithin(path, QSize(1000, 1000)).size(), QSize(200, 320));
}

/// The whole picture is cut off here, so only the smaller one can have been read.
void TestPictures::smallerVersionInTheFileServes()
{
    QByteArray file = sample::heicOf(twoHalves(640, 400), {1, 160});
    const QByteArray alone = sample::heicOf(twoHalves(640, 400));
    const qsizetype begin = file.indexOf("mdat") + 4;
    const qsizetype wholeBytes = alone.size() - alone.indexOf("mdat") - 4;
    QVERIFY(wholeBytes > 0 && begin + wholeBytes < file.size());
    file.replace(begin, wholeBytes, QByteArray(wholeBytes, '\0'));
    const QString path = write(m_folder.filePath("cut.heic"), file);
    const QImage small = readPictureWithin(path, QSize(120, 120));
    QCOMPARE(small.size(), QSize(120, 75));
    QCOMPARE(colourAt(small, 0.25, 0.5), QStringLiteral("red"));
    QVERIFY(PictureReader(path).read().isNull());
}

void TestPictures::readsAnyKind_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("format"); // empty: no picture
    QTest::newRow("JPEG") << picture(30, 20, "JPEG") << QByteArray("jpeg");
    QTest::newRow("BMP") << picture(30, 20, "BMP") << QByteArray("bmp");
    QTest::newRow("GIF") << QByteArray::fromHex("4749463839611e0014008000002b7a78ffffff2c000000001e001400000"
                                                "2228c8f69c0ed0fa39cb4da8bb3debcfb0f86e24896e689a6eacab6ee0b"
                                                "c7f24cd75b01003b")
                         << QByteArray("gif");
    QTest::newRow("HEIC") << sample::heicOf(twoHalves(30, 20)) << QByteArray("heif");
    QTest::newRow("pages that may name other files")
        << QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30\" height=\"20\"></svg>")
        << QByteArray();
    QTest::newRow("a film") << QByteArray::fromHex("000000146674797071742020000000007174202000000008") +
                                   "mdat"
                            << QByteArray();
    QTest::newRow("text") << QByteArray("no picture") << QByteArray();
    QTest::newRow("empty") << QByteArray() << QByteArray();
}

void TestPictures::readsAnyKind()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, format);
    PictureReader reader(write(m_folder.filePath("any"), file));
    QCOMPARE(reader.format(), format);
    QCOMPARE(reader.size(), format.isEmpty() ? QSize() : QSize(30, 20));
    QCOMPARE(reader.read().size(), reader.size().isEmpty() ? QSize(0, 0) : QSize(30, 20));
}

void TestPictures::thumbnailIsKept()
{
    const QString path = write(m_folder.filePath("kept.png"), picture(200, 100));
    const QString made = thumbnailOf(path).value_or(QString());
    const QDateTime time = QFileInfo(path).lastModified();
    const QByteArray marked = readFile(made) + "kept";
    const auto setTime = [](const QString &file, const QDateTime &to) {
        QFile touched(file);
        return touched.open(QIODevice::ReadWrite) &&
               touched.setFileTime(to, QFileDevice::FileModificationTime);
    };
    write(made, marked);
    QVERIFY(setTime(made, time));
    QCOMPARE(thumbnailOf(path).value_or(QString()), made);
    QCOMPARE(readFile(made), marked);

    // Another picture has come to the same place.
    write(path, picture(100, 200));
    QVERIFY(setTime(path, time.addSecs(-1000)));
    QCOMPARE(QImage(thumbnailOf(path).value_or(QString())).size(), QSize(60, 120));
}

void TestPictures::thumbnailOfSomebodyElseIsNotUsed()
{
    const QString path = write(m_folder.filePath("mine.png"), picture(200, 100));
    const QString place = thumbnailOf(path).value_or(QString());
    const QString victim = write(m_folder.filePath("victim"), "precious");
    QVERIFY(QFile::remove(place));
    QVERIFY(QFile::link(victim, place));
    QCOMPARE(QImage(thumbnailOf(path).value_or(QString())).size(), QSize(120, 60));
    QCOMPARE(readFile(victim), QByteArray("precious"));
}

void TestPictures::cardPhoto_data()
{
    QTest::addColumn<QByteArray>("card");
    QTest::addColumn<bool>("hasPhoto");
    const QByteArray text = picture(8, 8).toBase64();
    QByteArray folded;
    for (qsizetype at = 0; at < text.size(); at += 40)
        folded += text.mid(at, 40) + "\r\n ";
    const auto card = [](const QByteArray &line) {
        return "BEGIN:VCARD\r\nN:A;B\r\n" + line + "\r\nTEL:1\r\nEND:VCARD\r\n";
    };
    QTest::newRow("3.0") << card("PHOTO;ENCODING=b;TYPE=PNG:" + text) << true;
    QTest::newRow("3.0, folded") << card("PHOTO;ENCODING=b;TYPE=PNG:" + folded.chopped(3)) << true;
    QTest::newRow("2.1, begins on the next line")
        << card("PHOTO;ENCODING=BASE64;TYPE=PNG:\r\n  " + folded.trimmed() + "\r\n") << true;
    QTest::newRow("2.1, short") << card("PHOTO;BASE64;PNG:" + text) << true;
    QTest::newRow("4.0") << card("PHOTO:data:image/png;base64," + text) << true;
    QTest::newRow("of a group, small letters") << card("item1.photo;encoding=b:" + text) << true;
    QTest::newRow("line feeds alone")
        << card("PHOTO;ENCODING=b:" + folded.chopped(3)).replace("\r", "") << true;
    QTest::newRow("not the last line's end") << ("PHOTO;ENCODING=b:" + text) << true;
    QTest::newRow("in the second card") << card("") + card("PHOTO;ENCODING=b:" + text) << true;
    QTest::newRow("an address elsewhere") << card("PHOTO;VALUE=uri:http://example.org/a.png") << false;
    QTest::newRow("no picture") << card("PHOTO;ENCODING=b:" + QByteArray("<svg onload=x>").toBase64())
                                << false;
    QTest::newRow("no Base64") << card("PHOTO;ENCODING=b:!!!!") << false;
    QTest::newRow("another property") << card("LOGO;ENCODING=b:" + text) << false;
    QTest::newRow("none") << card("NOTE:PHOTO;ENCODING=b") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestPictures::cardPhoto()
{
    QFETCH(QByteArray, card);
    QFETCH(bool, hasPhoto);
    QCOMPARE(vCardPhoto(card), hasPhoto ? picture(8, 8) : QByteArray());
}

void TestPictures::cardPicture()
{
    const QByteArray card = "PHOTO;ENCODING=b:" + picture(8, 8).toBase64();
    const std::optional<QString> made = vCardPictureOf(write(m_folder.filePath("a.vcf"), card));
    QVERIFY(made);
    QCOMPARE(readFile(*made), picture(8, 8));
    QVERIFY(!vCardPictureOf(write(m_folder.filePath("b.vcf"), "N:A")));
    QVERIFY(!vCardPictureOf(m_folder.filePath("missing.vcf")));
}

void TestPictures::emojiOfOldTelephones_data()
{
    QTest::addColumn<uint>("key");
    QTest::addColumn<QString>("expected");
    QTest::newRow("first") << 0xE001u << QString::fromUtf8("👦");
    QTest::newRow("last of the first page") << 0xE05Au << QString::fromUtf8("💩");
    QTest::newRow("behind it") << 0xE05Bu << "";
    QTest::newRow("second page, last") << 0xE15Au << QString::fromUtf8("🚕");
    QTest::newRow("telephone key") << 0xE225u << QString::fromUtf8("0️⃣");
    QTest::newRow("third page, last") << 0xE253u << QString::fromUtf8("💁");
    QTest::newRow("fourth page, last") << 0xE34Du << QString::fromUtf8("🍲");
    QTest::newRow("fifth page, last") << 0xE44Cu << QString::fromUtf8("🌈");
    QTest::newRow("flag") << 0xE50Bu << QString::fromUtf8("🇯🇵");
    QTest::newRow("last flag") << 0xE514u << QString::fromUtf8("🇰🇷");
    QTest::newRow("behind the flags") << 0xE515u << QString::fromUtf8("👱");
    QTest::newRow("last of all") << 0xE537u << QString::fromUtf8("™");
    QTest::newRow("a page's empty place") << 0xE000u << "";
}

void TestPictures::emojiOfOldTelephones()
{
    QFETCH(uint, key);
    QTEST(modernEmojiOf(key), "expected");
}

void TestPictures::everyEmojiHasAPicture_data()
{
    QTest::addColumn<uint>("key");
    QTest::newRow("smiley") << 0x1F600u;
    QTest::newRow("symbol") << 0x2714u;
    QTest::newRow("old telephone") << 0xE415u;
    QTest::newRow("in no colour font") << 0x1F67Fu;
    QTest::newRow("old telephone, no picture") << 0xE0FFu;
}

void TestPictures::everyEmojiHasAPicture()
{
    QFETCH(uint, key);
    const QImage image = QImage::fromData(emojiPng(key), "PNG");
    QVERIFY(image.width() == image.height() && image.width() >= 60);
    QVERIFY(image.hasAlphaChannel());
    int opaque = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            opaque += qAlpha(image.pixel(x, y)) > 128;
    const int area = image.width() * image.height();
    QVERIFY2(opaque > area / 20 && opaque < area, qPrintable(QString::number(opaque)));
}

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
