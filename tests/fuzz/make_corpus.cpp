#include "sample/catalogue_record.h"
#include "sample/keybag_writer.h"
#include "sample/keyed_archive.h"
#include "sample/mbdb_writer.h"
#include "sample/typedstream_writer.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageWriter>

#include <cstdio>

/// Writes the seeds of the fuzz targets: a few small files of every kind that the readers know.

namespace {
using sample::CatalogueRecord;
using sample::PlistValue;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

class Corpus
{
public:
    explicit Corpus(const QString &folder) : m_folder(folder) {}

    QString place(const char *target, const char *name) const
    {
        const QString folder = m_folder.filePath(text(target));
        QDir().mkpath(folder);
        return folder + QLatin1Char('/') + text(name);
    }

    void add(const char *target, const char *name, const QByteArray &bytes) const
    {
        QFile file(place(target, name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }

private:
    QDir m_folder;
};

QByteArray keybag(int outerRounds)
{
    return sample::KeybagWriter("secret", {outerRounds, 2}, sample::SeededGenerator(1)).bytes();
}

CatalogueRecord file()
{
    CatalogueRecord record;
    record.domain = text("HomeDomain");
    record.relativePath = text("Library/SMS/sms.db");
    record.digest = QByteArray(20, 'd');
    record.encryptionKey = QByteArray("\4\0\0\0", 4) + QByteArray(40, 'k');
    record.mode = 0x81A4;
    record.inode = 123456;
    record.modified = record.statusChanged = record.born = 1'700'000'000;
    record.size = 118784;
    record.protectionClass = 4;
    record.properties = {{"com.apple.name", "value"}};
    return record;
}

CatalogueRecord link()
{
    CatalogueRecord record;
    record.kind = CatalogueRecord::Link;
    record.domain = text("HomeDomain");
    record.relativePath = text("Library/Link");
    record.target = text("/var/mobile/Größe/😀");
    record.mode = 0xA1FF;
    return record;
}

PlistValue::Dictionary description()
{
    PlistValue::Dictionary lockdown = {{text("DeviceName"), text("Jürgens 📱")},
                                       {text("ProductType"), text("iPhone12,1")},
                                       {text("SerialNumber"), 12345}};
    PlistValue::Array mixed = {1.5, -7, true, text(""), QByteArray("bytes"), PlistValue::Array{}};
    return {{text("IsEncrypted"), true},
            {text("BackupKeyBag"), keybag(3)},
            {text("ManifestKey"), QByteArray(44, 'm')},
            {text("Date"), sample::PlistDate{7e8}},
            {text("Lockdown"), std::move(lockdown)},
            {text("Mixed"), std::move(mixed)}};
}

/// Participants of a conversation and attachments of a message, up to iOS 5: a list, or the archive of one.
void addLists(const Corpus &corpus)
{
    const PlistValue::Array texts = {text("+4917012345678"), text("größe@example.org"), text("")};
    corpus.add("listed_texts", "binary", sample::binaryPlist(texts));
    corpus.add("listed_texts", "xml", sample::xmlPlist(texts));

    sample::KeyedArchive archive;
    const sample::PlistUid root = archive.add(text("in place of the list"));
    PlistValue::Array items;
    for (const PlistValue &item : texts)
        items.push_back(archive.add(item));
    const sample::PlistUid wrapped =
        archive.add(PlistValue::Dictionary{{text("NS.string"), text("wrapped")}});
    items.push_back(wrapped);
    archive.set(root, PlistValue::Dictionary{
                          {text("NS.objects"), items},
                          {text("$class"), archive.addClass({text("NSArray"), text("NSObject")})}});
    corpus.add("listed_texts", "archive", archive.finish(root));
}

void addRecords(const Corpus &corpus)
{
    using Layout = sample::RecordLayout;
    corpus.add("file_record", "file", archivedFileRecord(file(), Layout::RootFirst));
    corpus.add("file_record", "file-root-last", archivedFileRecord(file(), Layout::RootLast));
    corpus.add("file_record", "link", archivedFileRecord(link(), Layout::RootFirst));

    sample::MbdbWriter writer(corpus.place("mbdb", "two-records"));
    writer.add(file());
    writer.add(link());
    writer.finish();
}

void addCards(const Corpus &corpus)
{
    corpus.add(
        "vcard", "old",
        "BEGIN:VCARD\r\nVERSION:2.1\r\nN;CHARSET=ISO-8859-1:K\xf6nig;Ada;;Dr.;\r\nTEL;WORK;FAX:+49 30 1\r\n"
        "NOTE;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:Gr=C3=BC=C3=9Fe =\r\n aus=0D=0A=\r\nRom\r\n"
        "PHOTO;JPEG;ENCODING=BASE64:\r\n /9j/4AAQSkZJRgABAQ\r\n AAAQABAAD/\r\n\r\nEND:VCARD\r\n");
    corpus.add("vcard", "usual",
               "BEGIN:VCARD\nVERSION:3.0\nFN:Ada King\nN:King;Ada;Byron\\;x;;\nORG:Engine\\, Ltd;Looms;East\n"
               "item1.EMAIL;type=INTERNET;type=WORK:a@\n b.c\nADR;TYPE=home:;;1 Main;London;;N1;UK\n"
               "IMPP;X-SERVICE-TYPE=Skype:skype:ada\nCATEGORIES:one,two\nX-REL;TYPE=sister:Al\nEND:VCARD\n");
    corpus.add("vcard", "new",
               "BEGIN:VCARD\r\nVERSION:4.0\r\nFN:Grace\r\nTEL;VALUE=uri;TYPE=\"cell,voice\":tel:+1-2\r\n"
               "PHOTO:data:image/png;base64,iVBORw0K\r\r\n "
               "GgoA\r\nBDAY:19061209\r\nURL;X-LABEL=\"a:b;c\":http://x\r\n"
               "END:VCARD\r\nBEGIN:VCARD\r\nFN:cut");
}

/// Small pictures of every format that is decoded.
void addPictures(const Corpus &corpus)
{
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(0xFF2B7A78);
    for (const char *format : {"jpeg", "png", "bmp"}) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QImageWriter writer(&buffer, format);
        writer.setProgressiveScanWrite(true);
        writer.setText(text("Comment"), text("text"));
        if (!writer.write(image))
            qFatal("cannot write a picture");
        corpus.add("picture", format, bytes);
    }
    corpus.add("picture", "gif",
               QByteArray::fromHex("4749463839610a0005008000002b7a78ffffff21f904010000000021fe04746578740"
                                   "02c000000000a000500000207848fa9cbed0f0b003b"));
}
} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("usage: make_corpus DIR\n", stderr);
        return 2;
    }
    const Corpus corpus(QDir(QString::fromLocal8Bit(argv[1])).absolutePath());
    addRecords(corpus);
    addLists(corpus);
    addPictures(corpus);
    corpus.add("keybag", "single", keybag(0));
    corpus.add("keybag", "double", keybag(3));
    corpus.add("manifest_plist", "binary", sample::binaryPlist(description()));
    corpus.add("manifest_plist", "xml", sample::xmlPlist(description()));
    corpus.add("typedstream", "plain", sample::typedstreamBody("Yes, see you there"));
    addCards(corpus);
    corpus.add("typedstream", "mutable-with-long-text",
               sample::typedstreamBody(QByteArray(300, 'x'), {}, sample::StyledText::Mutable));
    return 0;
}
