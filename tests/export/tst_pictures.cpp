#include "base/limited_process.h"
#include "export/emoji_picture.h"
#include "export/picture_filter.h"
#include "export/picture_reader.h"
#include "export/softbank_emoji.h"
#include "export/thumbnails.h"
#include "export/vcard_photo.h"
#include "sample/heic_writer.h"
#include "sample_messages.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

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

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += char(value >> shift);
    return bytes;
}

QByteArray pngChunk(const QByteArray &type, const QByteArray &content)
{
    quint32 crc = 0xFFFFFFFF;
    for (const char byte : type + content) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320 & (0 - (crc & 1)));
    }
    return bigEndian(quint32(content.size())) + type + content + bigEndian(~crc);
}

/// A PNG whose header claims another size than its pixels have.
QByteArray claiming(quint32 width, quint32 height)
{
    QByteArray bytes = picture(1, 1);
    return bytes.replace(8, 25, pngChunk("IHDR", bigEndian(width) + bigEndian(height) + bytes.mid(24, 5)));
}

/// A PNG with a chunk in front of its pixels, so many times.
QByteArray pngWith(const QByteArray &chunk, int times)
{
    return picture(30, 20).insert(33, chunk.repeated(times));
}

/// What unfolds to many bytes, packed.
QByteArray packed(qsizetype bytes)
{
    return qCompress(QByteArray(bytes, 'x')).mid(4);
}

QByteArray progressiveJpeg(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "JPEG");
    writer.setProgressiveScanWrite(true);
    writer.write(image);
    return bytes;
}

/// A JPEG whose last pass over the pixels is there so many times.
QByteArray jpegOfPasses(int times)
{
    QByteArray bytes = progressiveJpeg(twoHalves(30, 20));
    const qsizetype begin = bytes.lastIndexOf("\xFF\xDA");
    const QByteArray pass = bytes.mid(begin, bytes.size() - begin - 2);
    return bytes.insert(begin, pass.repeated(times));
}

/// A JPEG, GIF or BMP with other bytes at a place.
QByteArray forged(const QByteArray &file, qsizetype at, const QByteArray &bytes)
{
    return QByteArray(file).replace(at, bytes.size(), bytes);
}

const QByteArray smallGif = QByteArray::fromHex("4749463839611e0014008000002b7a78ffffff2c000000001e001400000"
                                                "2228c8f69c0ed0fa39cb4da8bb3debcfb0f86e24896e689a6eacab6ee0b"
                                                "c7f24cd75b01003b");

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
    void thumbnailIsOfWhatLiesThereNow();
    void readsUpright_data();
    void readsUpright();
    void smallerVersionInTheFileServes();
    void readsAnyKind_data();
    void readsAnyKind();
    void hostile_data();
    void hostile();
    void keepsNothingWithoutASize();
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
    QByteArray made = thumbnailOf(path).encoded();
    QCOMPARE(made.isEmpty(), size.isEmpty());
    QVERIFY2(QDir(m_temporary.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             "something is left in the temporary folder");
    if (made.isEmpty())
        return;
    QBuffer buffer(&made);
    QImageReader reader(&buffer);
    QCOMPARE(reader.size(), size);
    QTEST(reader.format(), "format");
}

/// The files of another backup come to the same place, in the same second.
void TestPictures::thumbnailIsOfWhatLiesThereNow()
{
    const QString path = write(m_folder.filePath("place.png"), picture(200, 100));
    const QDateTime time = QFileInfo(path).lastModified();
    QCOMPARE(thumbnailOf(path).image.size(), QSize(120, 60));
    QFile file(write(path, picture(100, 200)));
    QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFileDevice::FileModificationTime));
    file.close();
    QCOMPARE(thumbnailOf(path).image.size(), QSize(60, 120));
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
    const auto within = [&path](int width, int height) {
        return readPictureFile(path, {PictureFit::Within, {width, height}}).image;
    };
    const QImage whole = readPictureFile(path).image;
    QCOMPARE(whole.size(), QSize(200, 320));
    const QImage covering = readPictureFile(path, {PictureFit::Covering, {50, 50}}).image;
    QCOMPARE(covering.size(), QSize(50, 80));
    for (const QImage &image : {whole, covering, within(50, 80), within(1000, 80), thumbnailOf(path).image}) {
        QCOMPARE(image.height() * 10 / image.width(), 16);
        QCOMPARE(colourAt(image, 0.5, 0.2), QStringLiteral("red"));
        QCOMPARE(colourAt(image, 0.5, 0.8), QStringLiteral("blue"));
    }
    QCOMPARE(within(50, 1000).size(), QSize(50, 80));
    QCOMPARE(within(1000, 1000).size(), QSize(200, 320));
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
    const QImage small = readPictureFile(path, {PictureFit::Within, {120, 120}}).image;
    QCOMPARE(small.size(), QSize(120, 75));
    QCOMPARE(colourAt(small, 0.25, 0.5), QStringLiteral("red"));
    QVERIFY(readPictureFile(path).isBad());
}

void TestPictures::readsAnyKind_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("format"); // empty: no picture
    QTest::newRow("JPEG") << picture(30, 20, "JPEG") << QByteArray("jpeg");
    QTest::newRow("BMP") << picture(30, 20, "BMP") << QByteArray("bmp");
    QTest::newRow("GIF") << smallGif << QByteArray("gif");
    QTest::newRow("PNG") << picture(30, 20) << QByteArray("png");
    QTest::newRow("JPEG of many passes") << progressiveJpeg(twoHalves(30, 20)) << QByteArray("jpeg");
    QTest::newRow("JPEG with bytes behind its end")
        << picture(30, 20, "JPEG") + QByteArray(5000, '\xFF') << QByteArray("jpeg");
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
    const ReadPicture read = readPictureFile(write(m_folder.filePath("any"), file));
    QCOMPARE(read.format, format);
    QCOMPARE(read.image.size(), format.isEmpty() ? QSize(0, 0) : QSize(30, 20));
    QVERIFY(!read.isBad());
}

void TestPictures::hostile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("isShown");
    const QByteArray jpeg = picture(30, 20, "JPEG");
    const qsizetype frame = jpeg.indexOf("\xFF\xC0");
    constexpr qsizetype unfolded = 7 << 20;
    const QByteArray text = "Comment" + QByteArray(2, '\0') + packed(unfolded);
    const QByteArray newText =
        "Comment" + QByteArray(1, '\0') + '\1' + QByteArray(3, '\0') + packed(unfolded);
    const QByteArray profile = "Profile" + QByteArray(2, '\0') + packed(unfolded);
    QTest::newRow("PNG, 900 packed texts") << pngWith(pngChunk("zTXt", text), 900) << true;
    QTest::newRow("PNG, 900 packed texts of the newer kind")
        << pngWith(pngChunk("iTXt", newText), 900) << true;
    QTest::newRow("PNG, 900 packed profiles") << pngWith(pngChunk("iCCP", profile), 900) << true;
    QTest::newRow("PNG, 200,000 chunks of no kind") << pngWith(pngChunk("quIl", "x"), 200000) << true;
    QTest::newRow("PNG, chunk longer than the file")
        << forged(picture(30, 20), 33, bigEndian(0x7FFFFFFF)) << false;
    QTest::newRow("PNG of 10 gigabytes") << claiming(50000, 50000) << false;
    QTest::newRow("PNG of one line") << claiming(100'000'000, 1) << false;
    QTest::newRow("JPEG of 5,000 passes") << jpegOfPasses(5000) << false;
    QTest::newRow("JPEG of 50 passes") << jpegOfPasses(40) << true;
    QTest::newRow("JPEG of 4 gigapixels") << forged(jpeg, frame + 5, "\xFF\xFF\xFF\xFF") << false;
    QTest::newRow("JPEG, 500 comments")
        << QByteArray(jpeg).insert(2, ("\xFF\xFE\xFF\xFF" + QByteArray(65533, 'x')).repeated(500)) << true;
    QTest::newRow("JPEG of a kind that nobody writes") << forged(jpeg, frame + 1, "\xC9") << false;
    QTest::newRow("JPEG, two frames") << QByteArray(jpeg).insert(frame, jpeg.mid(frame, 19)) << false;
    QTest::newRow("JPEG without pixels") << jpeg.left(jpeg.indexOf("\xFF\xDA")) << false;
    QTest::newRow("GIF of 4 gigapixels") << forged(smallGif, 6, "\xFF\xFF\xFF\xFF") << false;
    QTest::newRow("GIF of 20,000 pictures")
        << QByteArray(smallGif).insert(smallGif.size() - 1, smallGif.mid(19).chopped(1).repeated(20000))
        << true;
    QTest::newRow("BMP of 4 gigapixels")
        << forged(picture(30, 20, "BMP"), 18, QByteArray::fromHex("ffff0000ffff0000")) << false;
    QTest::newRow("HEIC that claims more than it has") << claimingHeic(16000) << false;
    QTest::newRow("HEIC of 4 gigapixels") << claimingHeic(65000) << false;
}

/// Each in a process of its own that may use half of what any input may.
void TestPictures::hostile()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, isShown);
    const std::optional<QByteArray> said =
        outputOf({.program = QCoreApplication::applicationFilePath(),
                  .arguments = {"--read", write(m_folder.filePath("bad"), file)},
                  .mostOutputBytes = 1000,
                  .mostMemoryBytes = quint64{1} << 30,
                  .longestMs = 20000});
    QVERIFY2(said, "it took too much memory or time");
    QCOMPARE(*said, isShown ? QByteArray("shown") : QByteArray("bad"));
}

void TestPictures::keepsNothingWithoutASize()
{
    for (const QByteArray &whole :
         {picture(30, 20, "JPEG"), picture(30, 20), picture(30, 20, "BMP"), smallGif}) {
        for (qsizetype length = 0; length < whole.size(); ++length) {
            const FilteredPicture kept = filteredPicture(whole.first(length));
            QVERIFY2(kept.bytes.isEmpty() || isPictureSize(kept.size),
                     whole.first(3) + QByteArray::number(length));
        }
    }
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
    const auto pictureOf = [this](const QByteArray &card) {
        return vCardPictureOf(write(m_folder.filePath("a.vcf"), card));
    };
    const auto photo = [](const QByteArray &bytes) { return "PHOTO;ENCODING=b:" + bytes.toBase64(); };
    QCOMPARE(pictureOf(photo(picture(8, 8))).image.size(), QSize(8, 8));
    QCOMPARE(pictureOf(photo(picture(1000, 500, "JPEG"))).image.size(), QSize(200, 100));
    QVERIFY(pictureOf(photo(claiming(60000, 60000))).isBad);
    QVERIFY(pictureOf("N:A").encoded().isEmpty());
    QVERIFY(vCardPictureOf(m_folder.filePath("missing.vcf")).encoded().isEmpty());
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

namespace {
/// What a test does with a picture that it does not want to read itself.
int readForTest(const char *path)
{
    const ReadPicture read =
        readPictureFile(QString::fromLocal8Bit(path), {PictureFit::Within, QSize(640, 640)});
    std::fputs(!read.image.isNull() ? "shown" : read.isBad() ? "bad" : "none", stdout);
    return 0;
}
} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && QByteArray(argv[1]) == "--read") {
        const QCoreApplication application(argc, argv);
        return readForTest(argv[2]);
    }
    const QGuiApplication application(argc, argv);
    TestPictures tests;
    return QTest::qExec(&tests, argc, argv);
}
#include "tst_pictures.moc"
