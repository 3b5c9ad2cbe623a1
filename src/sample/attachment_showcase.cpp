#include "sample/message_content.h"

#include "base/apple_time.h"
#include "sample/media_content.h"
#include "sample/showcase.h"
#include "sample/typedstream_writer.h"

namespace sample {

namespace {

enum class Kind { Jpeg, Png, BrokenJpeg, Heic, Movie, Amr, Card, CardWithPhoto, Text, Pdf, Bytes };

/// Where the file is and how its row names it.
enum class Where {
    Media,         // ~/Library/…, a file of MediaDomain: what backups do
    MediaAbsolute, // /var/mobile/Library/…, of MediaDomain
    Home,          // ~/Library/…, of HomeDomain
    NotInBackup,   // the row has a name, the catalogue has nothing
    NoName         // the row has no name
};

struct AttachmentCase
{
    const char *name;
    const char *mimeType; // null: the kind comes from the identifier alone
    const char *uti;
    Kind kind;
    Where where = Where::Media;
};

constexpr AttachmentCase cases[] = {
    {"IMG_0001.JPG", "image/jpeg", "public.jpeg", Kind::Jpeg},
    {"IMG_0002.PNG", "image/png", "public.png", Kind::Png},
    {"IMG_0003.HEIC", "image/heic", "public.heic", Kind::Heic},
    {"IMG_0004.MOV", "video/quicktime", "com.apple.quicktime-movie", Kind::Movie},
    {"Audio Message.amr", "audio/amr", "org.3gpp.adaptive-multi-rate-audio", Kind::Amr},
    {"Ada Brückner.vcf", "text/x-vCard", "public.vcard", Kind::CardWithPhoto},
    {"No Picture.vcf", "text/vcard", "public.vcard", Kind::Card},
    {"notes <draft> & more.txt", "text/plain", "public.plain-text", Kind::Text},
    {"timetable.pdf", "application/pdf", "com.adobe.pdf", Kind::Pdf},
    {"a.b.jpg", "image/jpeg", "public.jpeg", Kind::Jpeg},
    {"a.b.jpg", "IMAGE/JPEG", "public.jpeg", Kind::Jpeg, Where::MediaAbsolute},
    {"broken.jpg", "image/jpeg", "public.jpeg", Kind::BrokenJpeg},
    {"without-ending", nullptr, "public.jpeg", Kind::Jpeg},
    {"at home.png", "image/png", "public.png", Kind::Png, Where::Home},
    {"left in the cloud.jpg", "image/jpeg", "public.jpeg", Kind::Jpeg, Where::NotInBackup},
    {"row alone.mov", "video/quicktime", "com.apple.quicktime-movie", Kind::Movie, Where::NotInBackup},
    {"nameless", "image/jpeg", "public.jpeg", Kind::Jpeg, Where::NoName},
    {"drawing.unknown", "application/x-unheard-of", "dyn.age80", Kind::Bytes},
};

constexpr const char *place = "\xEF\xBF\xBC"; // U+FFFC, where an attachment stands in the text

QByteArray contentOf(const AttachmentCase &example, SeededGenerator &chance)
{
    switch (example.kind) {
    case Kind::Jpeg:
        return picture("JPEG", 320, 200, chance);
    case Kind::Png:
        return picture("PNG", 90, 160, chance);
    case Kind::BrokenJpeg:
        return picture("JPEG", 64, 64, chance).left(40);
    case Kind::Heic:
        return heicPicture(320, 200, chance);
    case Kind::Movie:
        return movie(chance);
    case Kind::Amr:
        return amrAudio(2);
    case Kind::Card:
        return vcard("No Picture", "+14155550150", {});
    case Kind::CardWithPhoto:
        return vcard("Ada Brückner", "+14155550132", picture("JPEG", 48, 48, chance));
    case Kind::Text:
        return "plain <text> & more\nwith a second line – and ünïcode\n";
    case Kind::Pdf:
        return pdfDocument("A timetable");
    case Kind::Bytes:
        return chance.bytes(333);
    }
    return {};
}

} // namespace

/// The folder of one attachment, below the folder of all.
QString MessageContent::ownFolder(const QByteArray &guid) const
{
    return QStringLiteral("Library/%1/Attachments/%2/%3/%4")
        .arg(QLatin1String(m_keeper == Keeper::Mac ? "Messages" : "SMS"))
        .arg(QString::fromLatin1(guid.left(2).toLower()))
        .arg(guid.back() % 16, 2, 10, QLatin1Char('0'))
        .arg(QString::fromLatin1(guid));
}

MessageRow MessageContent::messageWithFiles(std::size_t conversation, const QByteArray &text,
                                            const QByteArrayList &guids)
{
    MessageRow row = message(conversation, text);
    row.hasAttachments = true;
    const QString characters = QString::fromUtf8(text);
    std::vector<TextRun> runs;
    int file = 0;
    for (const QChar character : characters) {
        const bool here = character == QChar::ObjectReplacementCharacter && file < guids.size();
        const bool joins = !here && !runs.empty() && runs.back().transferGuid.isEmpty();
        if (joins)
            ++runs.back().length;
        else
            runs.push_back({1, static_cast<int>(runs.size()), here ? guids[file++] : QByteArray()});
    }
    row.attributedBody = typedstreamBody(text, runs, StyledText::Mutable);
    return row;
}

void MessageContent::attach(qint64 message, AttachmentRow row, const AttachmentFile &file)
{
    row.totalBytes = file.content.size();
    m_database.addAttachment(row, message);
    ++m_counts.attachments;
    if (m_sink && !file.domain.isEmpty())
        m_sink(file);
}

void MessageContent::addAttachments()
{
    for (std::size_t index = 0; index < std::size(cases); ++index)
        addAttachmentCase(index);

    // Two in one message, with text around them.
    const QByteArrayList guids = {m_chance.uuid(), m_chance.uuid()};
    const QByteArray text = QByteArray("before ") + place + " between " + place + " after";
    MessageRow row = messageWithFiles(Named, text, guids);
    const qint64 rowid = say(Named, row);
    for (const QByteArray &guid : guids) {
        const QString path = ownFolder(guid) + QStringLiteral("/IMG_0001.JPG");
        attach(rowid,
               {guid, QStringLiteral("~/") + path, QStringLiteral("IMG_0001.JPG"),
                QStringLiteral("image/jpeg"), QStringLiteral("public.jpeg"), 0, row.date, row.fromMe},
               {QStringLiteral("MediaDomain"), path, unixFromApple(row.date),
                picture("JPEG", 60, 40, m_chance)});
    }
}

void MessageContent::addAttachmentCase(std::size_t index)
{
    const AttachmentCase &example = cases[index];
    const std::size_t conversation = index % 3 == 2 ? Named : Ada;
    const QByteArray guid = m_chance.uuid();
    MessageRow row = messageWithFiles(conversation, place, {guid});
    row.audio = example.kind == Kind::Amr;
    const QString name = QString::fromUtf8(example.name);
    const QString path = ownFolder(guid) + QLatin1Char('/') + name;
    AttachmentRow attachment{guid,
                             QStringLiteral("~/") + path,
                             name,
                             QLatin1String(example.mimeType),
                             QLatin1String(example.uti),
                             0,
                             row.date,
                             row.fromMe};
    AttachmentFile file{QStringLiteral("MediaDomain"), path, unixFromApple(row.date),
                        contentOf(example, m_chance)};
    switch (example.where) {
    case Where::Media:
        break;
    case Where::MediaAbsolute:
        attachment.filename =
            QLatin1String(m_keeper == Keeper::Mac ? "/Users/jordis/" : "/var/mobile/") + path;
        break;
    case Where::Home:
        file.domain = QStringLiteral("HomeDomain");
        break;
    case Where::NoName:
        attachment.filename = QString();
        file.domain.clear();
        break;
    case Where::NotInBackup:
        file.domain.clear();
        break;
    }
    attach(say(conversation, row), attachment, file);
    if (index == 0 && m_sink) // what the device shows in the conversation itself
        m_sink({file.domain, path + QStringLiteral("-preview-left"), file.modified,
                picture("JPEG", 40, 25, m_chance)});
}

void MessageContent::addBulkAttachment(std::size_t conversation)
{
    if (m_sink && m_pictures.isEmpty()) {
        for (int i = 0; i < 16; ++i)
            m_pictures << picture("JPEG", 160, 120, m_chance);
    }
    const QByteArray guid = m_chance.uuid();
    const MessageRow row = messageWithFiles(conversation, place, {guid});
    const QString name = QStringLiteral("IMG_%1.JPG").arg(1000 + m_counts.attachments % 9000);
    const QString path = ownFolder(guid) + QLatin1Char('/') + name;
    const QByteArray content = m_sink ? m_chance.pick(m_pictures) + m_chance.bytes(8) : QByteArray();
    attach(say(conversation, row),
           {guid, QStringLiteral("~/") + path, name, QStringLiteral("image/jpeg"),
            QStringLiteral("public.jpeg"), 0, row.date, row.fromMe},
           {QStringLiteral("MediaDomain"), path, unixFromApple(row.date), content});
}

} // namespace sample
