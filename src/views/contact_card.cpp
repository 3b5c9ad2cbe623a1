#include "views/contact_card.h"

#include "personal/contact_words.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

namespace {
constexpr int pictureSide = 96;
constexpr int largestSide = 12000;

// A picture may claim any size: it is scaled while it is read, and refused when it is absurd.
QString pictureHtml(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > largestSide || size.height() > largestSide)
        return {};
    reader.setScaledSize(size.scaled(pictureSide, pictureSide, Qt::KeepAspectRatio));
    QByteArray png;
    QBuffer out(&png);
    const QImage image = reader.read();
    if (image.isNull() || !image.save(&out, "PNG"))
        return {};
    return QStringLiteral("<p><img src=\"data:image/png;base64,%1\"/></p>")
        .arg(QString::fromLatin1(png.toBase64()));
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
    return QStringLiteral("<tr><td style=\"color:gray; padding:4px 16px 4px 0\">%1</td><td "
                          "style=\"padding:4px 0\">%2</td></tr>")
        .arg(escaped(label), escaped(valueOf(kind, row)));
}
} // namespace

QString contactCard(const ContactRecord &contact)
{
    QString html;
    const auto photos = contact.rows.value(ContactDataKind::Photo);
    if (!photos.isEmpty())
        html += pictureHtml(photos.first().data15);
    html += QStringLiteral("<h2>%1</h2><table>").arg(escaped(displayNameOf(contact)));
    for (auto kind = contact.rows.constBegin(); kind != contact.rows.constEnd(); ++kind)
        if (kind.key() != ContactDataKind::Name && kind.key() != ContactDataKind::Photo)
            for (const ContactDataRow &row : kind.value())
                html += rowHtml(kind.key(), row);
    return html + QStringLiteral("</table>");
}
