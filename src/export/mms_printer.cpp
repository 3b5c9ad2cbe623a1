#include "export/mms_printer.h"

#include "base/error.h"
#include "export/message_text.h"
#include "export/printed_attachments.h"

#include <QColorSpace>
#include <QPagedPaintDevice>
#include <QPainterPath>

#include <algorithm>

namespace {
constexpr qreal pointsPerInch = 72;
constexpr qreal textSize = 12;
constexpr qreal systemTextSize = 10;
constexpr qreal belowSystemItem = 9;
constexpr qreal dateHeight = 22;
constexpr qreal dateAdvance = 24;
constexpr qreal labelHeight = 18;
constexpr qreal labelAdvance = 19;
constexpr qreal labelLeft = 25;
constexpr qreal labelNarrower = 49;
constexpr qreal belowBubble = 11;
constexpr qreal widestBubble = 0.8; // of the page

// The shape and the colours of the bubbles on exported pages.
constexpr qreal paddingX = 11;
constexpr qreal paddingY = 6;
constexpr qreal round = 12.75;
constexpr qreal pointed = 3.75;
constexpr qreal narrowestBubble = 30;
constexpr qreal pointsPerPixel = 0.75; // of pictures, as on a screen
constexpr int emptyPhotoSide = 120;
constexpr QColor incomingColour(0xe8, 0xec, 0xeb);
constexpr QColor incomingText(0x1b, 0x24, 0x23);
constexpr QColor outgoingColour(0x2b, 0x7a, 0x78);
constexpr QColor outgoingText(0xff, 0xff, 0xff);
constexpr QColor quietText(0x5d, 0x6b, 0x69);

// A line on paper shows far less of a name.
constexpr qsizetype longestLabel = 400;

QPainterPath bubbleShape(const QRectF &rect, qreal point, bool outgoing)
{
    const qreal large = std::min({round * point, rect.width() / 2, rect.height() / 2});
    const qreal right = outgoing ? std::min(pointed * point, large) : large;
    const qreal left = outgoing ? large : std::min(pointed * point, large);
    QPainterPath path(QPointF(rect.left() + large, rect.top()));
    path.arcTo(rect.right() - 2 * large, rect.top(), 2 * large, 2 * large, 90, -90);
    path.arcTo(rect.right() - 2 * right, rect.bottom() - 2 * right, 2 * right, 2 * right, 0, -90);
    path.arcTo(rect.left(), rect.bottom() - 2 * left, 2 * left, 2 * left, 270, -90);
    path.arcTo(rect.left(), rect.top(), 2 * large, 2 * large, 180, -90);
    path.closeSubpath();
    return path;
}

QImage emptyPhoto()
{
    const QImage whole(QStringLiteral(":/bubble/empty_photo.jpg"));
    return whole.scaled(emptyPhotoSide, emptyPhotoSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

qreal heightOf(const std::vector<PrintedLine> &lines)
{
    qreal height = 0;
    for (const PrintedLine &line : lines)
        height += line.height();
    return height;
}

qreal widthOf(const std::vector<PrintedLine> &lines)
{
    qreal width = 0;
    for (const PrintedLine &line : lines)
        width = std::max(width, line.width());
    return width;
}
} // namespace

MMSPrinter::MMSPrinter(QPagedPaintDevice &device, PrintedAttachments &attachments)
    : m_device(device),
      m_attachments(attachments),
      m_dates(DateText::fixed(QStringLiteral("dd MMM yyyy"), QStringLiteral("h:m AP")))
{
}

void MMSPrinter::begin()
{
    if (!m_painter.begin(&m_device))
        throw Error(QStringLiteral("can not paint on the printer."));
    m_painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    m_point = m_device.logicalDpiY() / pointsPerInch;
    m_width = m_device.width();
    m_height = m_device.height();
    m_y = 0;
    m_lastDateLine.reset();
    m_emptyPhoto = emptyPhoto();
}

void MMSPrinter::end()
{
    m_painter.end();
}

QFont MMSPrinter::font(qreal points) const
{
    QFont result;
    result.setPixelSize(std::max(1, qRound(points * m_point)));
    // Hinting is for screens; on paper it would spoil the distances.
    result.setHintingPreference(QFont::PreferNoHinting);
    return result;
}

void MMSPrinter::print(const MessageRef &ref)
{
    const _MsgMessage &message = *ref.message;
    if (message.item_type != 0) {
        printSystemItem(systemText(message));
        return;
    }
    m_outgoing = message.is_from_me != 0;
    takeLead(ref);
    const QString body = messageBody(message);
    if (!body.isEmpty() || message.attachments.empty())
        printBubble(body);
    for (const _MsgAttachment *attachment : message.attachments)
        printAttachment(*attachment);
    printLead(); // where no bubble has taken it along
}

void MMSPrinter::printSystemItem(const QString &text)
{
    PrintedText lines(text, font(systemTextSize), m_width, m_emoji, LinePlace::Centre);
    m_painter.setPen(quietText);
    while (const std::optional<PrintedLine> line = lines.next()) {
        makeRoom(line->height());
        line->draw(m_painter, QPointF(0, m_y), m_width);
        m_y += line->height();
    }
    m_y += belowSystemItem * m_point;
}

void MMSPrinter::printAttachment(const _MsgAttachment &attachment)
{
    switch (attachmentKind(attachment.mime_type)) {
    case AttachmentKind::Image: {
        const QImage picture = m_attachments.picture(attachment);
        printBubble(picture.isNull() ? m_emptyPhoto : picture);
        break;
    }
    case AttachmentKind::VCard: {
        const QImage picture = m_attachments.picture(attachment);
        if (picture.isNull())
            printBubble(QStringLiteral("[VCARD]"));
        else
            printBubble(picture);
        break;
    }
    case AttachmentKind::Video:
        printBubble(QStringLiteral("[VIDEO]"));
        break;
    case AttachmentKind::Audio:
        printBubble(QStringLiteral("[AUDIO]"));
        break;
    case AttachmentKind::PlainText:
        if (const PrintedAttachments::Text text = m_attachments.text(attachment); text.isThere)
            printBubble(text.content.value_or(QStringLiteral("[ATTACHMENT]")));
        break;
    case AttachmentKind::Other:
        printBubble(QStringLiteral("[ATTACHMENT]"));
        break;
    }
}

void MMSPrinter::takeLead(const MessageRef &ref)
{
    m_lead = {.date = {}, .label = senderLabel(ref).left(longestLabel).simplified()};
    const std::int64_t time = unixFromApple(ref.message->date);
    if (m_lastDateLine && time - *m_lastDateLine <= sameTimeSeconds)
        return;
    m_lastDateLine = time;
    QByteArray date;
    m_dates.append(date, ref.message->date);
    m_lead.date = QString::fromUtf8(date);
}

qreal MMSPrinter::leadHeight() const
{
    return ((m_lead.date.isEmpty() ? 0 : dateAdvance) + (m_lead.label.isEmpty() ? 0 : labelAdvance)) *
           m_point;
}

void MMSPrinter::printLead()
{
    if (m_lead.date.isEmpty() && m_lead.label.isEmpty())
        return;
    makeRoom(leadHeight());
    m_painter.setPen(quietText);
    if (!m_lead.date.isEmpty()) {
        PrintedText date(m_lead.date, font(textSize), m_width, m_emoji, LinePlace::Centre);
        if (const std::optional<PrintedLine> line = date.next())
            line->draw(m_painter, QPointF(0, m_y + (dateHeight * m_point - line->height()) / 2), m_width);
        m_y += dateAdvance * m_point;
    }
    if (!m_lead.label.isEmpty())
        printLabel();
    m_lead = {};
}

void MMSPrinter::printLabel()
{
    const qreal width = m_width - labelNarrower * m_point;
    const QString shown = QFontMetricsF(font(textSize)).elidedText(m_lead.label, Qt::ElideRight, width);
    PrintedText label(shown, font(textSize), width, m_emoji, m_outgoing ? LinePlace::Right : LinePlace::Left);
    if (const std::optional<PrintedLine> line = label.next())
        line->draw(m_painter,
                   QPointF(labelLeft * m_point, m_y + (labelHeight * m_point - line->height()) / 2), width);
    m_y += labelAdvance * m_point;
}

void MMSPrinter::newPage()
{
    if (!m_device.newPage())
        throw Error(QStringLiteral("The printer gives no further page."));
    m_y = 0;
}

void MMSPrinter::makeRoom(qreal height)
{
    if (m_y > 0 && m_y + height > m_height)
        newPage();
}

bool MMSPrinter::fill(std::vector<PrintedLine> &lines, PrintedText &text, qreal height)
{
    qreal filled = heightOf(lines);
    while (filled <= height) {
        const std::optional<PrintedLine> line = text.next();
        if (!line)
            return true;
        lines.push_back(*line);
        filled += line->height();
    }
    return false;
}

void MMSPrinter::printBubble(const QString &text)
{
    const qreal widest = m_width * widestBubble - 2 * paddingX * m_point;
    const qreal around = 2 * paddingY * m_point;
    PrintedText flow(text, font(textSize), widest, m_emoji);
    std::vector<PrintedLine> lines;
    const bool fitsPage = fill(lines, flow, m_height - around);
    const qreal textWidth = fitsPage ? widthOf(lines) : widest;
    makeRoom(leadHeight() + (fitsPage ? heightOf(lines) + around : m_height));
    printLead();
    while (!lines.empty()) {
        std::size_t count = 0;
        for (qreal y = m_y + around; count < lines.size(); ++count) {
            y += lines[count].height();
            if (y > m_height)
                break;
        }
        // A page that is lower than a line still takes one.
        if (count == 0 && m_y > 0) {
            newPage();
            continue;
        }
        count = std::max<std::size_t>(count, 1);
        paintPart(lines, count, textWidth);
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(count));
        fill(lines, flow, m_height - around);
        if (!lines.empty())
            newPage();
    }
    m_y += belowBubble * m_point;
}

QRectF MMSPrinter::bubbleAt(qreal width, qreal height)
{
    const QRectF rect(m_outgoing ? m_width - width : 0, m_y, width, height);
    m_painter.fillPath(bubbleShape(rect, m_point, m_outgoing), m_outgoing ? outgoingColour : incomingColour);
    return rect;
}

void MMSPrinter::paintPart(const std::vector<PrintedLine> &lines, std::size_t count, qreal textWidth)
{
    qreal height = 2 * paddingY * m_point;
    for (std::size_t i = 0; i < count; ++i)
        height += lines[i].height();
    const qreal width = std::max(textWidth + 2 * paddingX * m_point, narrowestBubble * m_point);
    const QRectF rect = bubbleAt(width, height);
    m_painter.setPen(m_outgoing ? outgoingText : incomingText);
    QPointF at(rect.left() + (width - textWidth) / 2, rect.top() + paddingY * m_point);
    for (std::size_t i = 0; i < count; ++i) {
        lines[i].draw(m_painter, at, textWidth);
        at.ry() += lines[i].height();
    }
    m_y += height;
}

void MMSPrinter::printBubble(const QImage &picture)
{
    const qreal padding = paddingY * m_point;
    const QSizeF room(m_width * widestBubble - 2 * padding, std::max(m_height - 2 * padding, m_point));
    QSizeF size = QSizeF(picture.size()) * pointsPerPixel * m_point;
    if (size.width() > room.width() || size.height() > room.height())
        size.scale(room, Qt::KeepAspectRatio);
    makeRoom(leadHeight() + size.height() + 2 * padding);
    printLead();
    makeRoom(size.height() + 2 * padding);
    const QRectF rect = bubbleAt(size.width() + 2 * padding, size.height() + 2 * padding);
    // Paper and PDF files take every colour for one of the common space.
    m_painter.drawImage(QRectF(rect.topLeft() + QPointF(padding, padding), size),
                        picture.colorSpace().isValid() ? picture.convertedToColorSpace(QColorSpace::SRgb)
                                                       : picture);
    m_y += rect.height() + belowBubble * m_point;
}
