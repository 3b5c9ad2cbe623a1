#include "export/contacts_html.h"

#include "base/error.h"
#include "base/own_file.h"
#include "base/texts.h"
#include "export/output_file.h"
#include "export/page_policy.h"
#include "export/picture_reader.h"
#include "personal/contact_words.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QFile>

namespace {
constexpr char placeholder[] = "contact.png";
// Those of people stay as they are; cameras of telephones take no larger ones.
constexpr QSize largestPicture(8192, 8192);

QString line(const QString &text)
{
    return text + QStringLiteral("\r\n");
}

QString escaped(const QString &text)
{
    QString html = text.toHtmlEscaped();
    html.remove(QChar(0));
    return html.replace(QStringLiteral("\r\n"), QStringLiteral("<br/>"))
        .replace(QLatin1Char('\n'), QStringLiteral("<br/>"));
}

QString listItem(ContactDataKind kind, const ContactDataRow &row)
{
    QString value = row.data(1);
    if (kind == ContactDataKind::Organization) {
        QStringList parts{row.data(1), row.data(5), row.data(4)};
        parts.removeAll(QString());
        value = parts.join(QStringLiteral(", "));
    }
    const QString label = kind == ContactDataKind::Note ? QString() : contactRowLabel(kind, row);
    return QStringLiteral("<li>%1</li>")
        .arg(escaped(value) +
             (label.isEmpty() ? QString() : QStringLiteral(" (") + escaped(label) + QLatin1Char(')')));
}

QString group(const ContactRecord &contact, ContactDataKind kind, const char *title)
{
    const auto rows = contact.rows.value(kind);
    if (rows.isEmpty())
        return {};
    QString html = line(QStringLiteral("<div style=\"margin-bottom:20px;\">"));
    html += line(QStringLiteral("<h2 class=\"ent_group\">%1</h2>").arg(QLatin1String(title)));
    html += line(QStringLiteral("<ul class=\"ent_list\">"));
    for (const ContactDataRow &row : rows)
        html += line(listItem(kind, row));
    html += line(QStringLiteral("</ul>"));
    return html + line(QStringLiteral("</div>"));
}

QString firstText(const ContactRecord &contact, ContactDataKind kind, int column)
{
    const auto rows = contact.rows.value(kind);
    return rows.isEmpty() ? QString() : rows.first().data(column);
}

QString nameBlock(const ContactRecord &contact)
{
    const QString nickname = firstText(contact, ContactDataKind::Nickname, 1);
    const QString company = firstText(contact, ContactDataKind::Organization, 1);
    const QString department = firstText(contact, ContactDataKind::Organization, 5);
    const QString jobTitle = firstText(contact, ContactDataKind::Organization, 4);
    QString html = QStringLiteral("<div class=\"ct_name\">") + escaped(displayNameOf(contact));
    if (!nickname.isEmpty())
        html += QStringLiteral("<br/>\"") + escaped(nickname) + QLatin1Char('"');
    if (!company.isEmpty())
        html += QStringLiteral("<br/>") + escaped(company);
    if (!department.isEmpty())
        html += QStringLiteral(" - ") + escaped(department);
    if (!jobTitle.isEmpty())
        html += QStringLiteral("<br/>") + escaped(jobTitle);
    return line(html + QStringLiteral("</div>")) + line(QStringLiteral("<div style=\"clear:both\"></div>"));
}

} // namespace

ContactsHtml::ContactsHtml(const QString &pagePath)
    : m_photoFolder(makeOwnFolder(QFileInfo(pagePath).absolutePath(), QStringLiteral("photos")))
{
    QFile resource(QStringLiteral(":/res/empty_contact.png"));
    if (!resource.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(resource.fileName(), resource.errorString()));
    writeWholeFile(QDir(m_photoFolder).filePath(QLatin1String(placeholder)), resource.readAll());
}

QString ContactsHtml::head() const
{
    QString html = line(QStringLiteral("<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
                                       "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">"));
    html += line(QStringLiteral("<html xmlns=\"http://www.w3.org/1999/xhtml\">"));
    html += line(QStringLiteral("<head>"));
    html += line(QStringLiteral("<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />"));
    html += line(QLatin1String(pageWithFiles));
    html += line(QStringLiteral("<title>%1</title>").arg(textFor("IDS_PRODUCT_NAME")));
    html += line(QStringLiteral("<style type=\"text/css\">"));
    html += line(QStringLiteral(".photo{float:left;margin:5px;border:1px solid #A9A9A9;}"));
    html += line(
        QStringLiteral(".ct_name{font-size:24px;font-weight:bold;font-style:italic;margin-bottom:20px;}"));
    html += line(
        QStringLiteral(".ent_group{padding:0;margin:0;font-size:20px; font-weight:bold; font-style:italic}"));
    html += line(QStringLiteral(".ent_list{margin:0; padding:0; list-style:none; font-size:18px}"));
    html += line(QStringLiteral("</style></head>"));
    return html + line(QStringLiteral("<body style=\"background-color:#F1F5FB\">"));
}

QString ContactsHtml::photoElement(const ContactRecord &contact)
{
    QString name = QLatin1String(placeholder);
    const auto photos = contact.rows.value(ContactDataKind::Photo);
    const QByteArray stored = photos.isEmpty() ? QByteArray() : photos.first().data15;
    const QImage image =
        stored.isEmpty() ? QImage() : readPicture(stored, {PictureFit::Within, largestPicture}).image;
    m_unreadablePictures += image.isNull() && !stored.isEmpty() ? 1 : 0;
    if (!image.isNull()) {
        // Contacts of several sources may share an identifier, and must not share a picture.
        const QString identifier =
            contact.id != 0 ? QString::number(contact.id) : QString::number(contact.src_id.toLongLong());
        name = identifier + QStringLiteral(".jpg");
        if (int &number = m_photos[identifier]; number++ > 0)
            name = QStringLiteral("%1(%2).jpg").arg(identifier).arg(number - 1);
        QByteArray jpeg;
        QBuffer buffer(&jpeg);
        image.save(&buffer, "JPEG");
        writeWholeFile(QDir(m_photoFolder).filePath(name), jpeg);
    }
    return line(QStringLiteral("<img class=\"photo\" src=\"photos/%1\" width=\"128\" />").arg(name));
}

QString ContactsHtml::card(const ContactRecord &contact)
{
    static constexpr std::pair<ContactDataKind, const char *> groups[] = {
        {ContactDataKind::Phone, "Phone:"},
        {ContactDataKind::Email, "E-Mail:"},
        {ContactDataKind::Event, "Date:"},
        {ContactDataKind::Im, "IM:"},
        {ContactDataKind::Organization, "Organization:"},
        {ContactDataKind::Relation, "Relationship:"},
        {ContactDataKind::PostalAddress, "Address:"},
        {ContactDataKind::Website, "Website:"},
        {ContactDataKind::Note, "Notes:"}};
    QString html = line(QStringLiteral("<div style=\"margin-bottom:50px;\">"));
    html += photoElement(contact);
    html += nameBlock(contact);
    for (const auto &[kind, title] : groups)
        html += group(contact, kind, title);
    return html + line(QStringLiteral("</div>"));
}

QString ContactsHtml::tail() const
{
    return QStringLiteral("</body></html>");
}
