#include "views/contact_card.h"

#include "base/texts.h"
#include "personal/contact_words.h"
#include "views/face_picture.h"
#include "views/icons.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

namespace {
constexpr int cardSide = 96;
constexpr int listSide = 32;

QImage readPicture(const ContactRecord &contact, int side)
{
    const auto photos = contact.rows.value(ContactDataKind::Photo);
    return photos.isEmpty() ? QImage() : readSquare(photos.first().data15, side);
}

QString pictureHtml(const ContactRecord &contact)
{
    const qreal ratio = qGuiApp->devicePixelRatio();
    const QImage image = readPicture(contact, qRound(cardSide * ratio));
    QByteArray png;
    QBuffer out(&png);
    if (image.isNull() || !image.save(&out, "PNG"))
        return {};
    return QStringLiteral("<p><img width=\"%1\" height=\"%1\" src=\"data:image/png;base64,%2\"/></p>")
        .arg(QString::number(cardSide), QString::fromLatin1(png.toBase64()));
}

QString escaped(const QString &text)
{
    return text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br/>"));
}

QString valueOf(ContactDataKind kind, const ContactDataRow &row)
{
    if (kind == ContactDataKind::GroupMembership)
        return row.data(2);
    if (kind != ContactDataKind::Organization)
        return row.data(1);
    QStringList parts{row.data(1), row.data(5), row.data(4)};
    parts.removeAll(QString());
    return parts.join(QLatin1Char('\n'));
}

QString rowHtml(ContactDataKind kind, const ContactDataRow &row)
{
    const QString label = kind == ContactDataKind::Nickname          ? QStringLiteral("Nickname")
                          : kind == ContactDataKind::Note            ? QStringLiteral("Notes")
                          : kind == ContactDataKind::GroupMembership ? QStringLiteral("Category")
                                                                     : contactRowLabel(kind, row);
    return QStringLiteral("<tr><td class=\"label\" style=\"padding:4px 16px 4px 0\">%1</td><td "
                          "style=\"padding:4px 0\">%2</td></tr>")
        .arg(escaped(label), escaped(valueOf(kind, row)));
}
} // namespace

QString contactTitle(const ContactRecord &contact)
{
    for (const ContactDataKind kind : {ContactDataKind::Name, ContactDataKind::Organization,
                                       ContactDataKind::Phone, ContactDataKind::Email})
        for (const ContactDataRow &row : contact.rows.value(kind))
            if (!row.data(1).isEmpty())
                return row.data(1);
    return textFor("IDS_NO_NAME");
}

QPixmap contactPicture(const ContactRecord &contact)
{
    const qreal ratio = qGuiApp->devicePixelRatio();
    const int side = qRound(listSide * ratio);
    QPixmap picture = QPixmap::fromImage(readPicture(contact, side));
    if (picture.isNull()) {
        picture = QPixmap(side, side);
        picture.fill(Qt::transparent);
        const QPixmap sign = listIcon("tree_contacts").pixmap(side / 2);
        QPainter(&picture).drawPixmap(QRect(side / 4, side / 4, side / 2, side / 2), sign);
    }
    picture.setDevicePixelRatio(ratio);
    return picture;
}

QString contactCard(const ContactRecord &contact)
{
    QString html =
        pictureHtml(contact) + QStringLiteral("<h2>%1</h2><table>").arg(escaped(contactTitle(contact)));
    for (auto kind = contact.rows.constBegin(); kind != contact.rows.constEnd(); ++kind)
        if (kind.key() != ContactDataKind::Name && kind.key() != ContactDataKind::Photo)
            for (const ContactDataRow &row : kind.value())
                html += rowHtml(kind.key(), row);
    return html + QStringLiteral("</table>");
}
