#pragma once

#include "export/date_text.h"
#include "export/printed_text.h"
#include "messages/msg_records.h"

#include <QPainter>

#include <optional>
#include <vector>

class PrintedAttachments;
class QPagedPaintDevice;
class QRectF;

/// Paints messages as chat bubbles, page after page: on a printer, or on the pages of a PDF file, where the
/// text can be selected. Lengths are in points, whatever the resolution of the device. Not for two threads at
/// a time; needs a QGuiApplication.
class MMSPrinter
{
public:
    /// Both must outlive it. The page's size and margins are those of the device.
    MMSPrinter(QPagedPaintDevice &device, PrintedAttachments &attachments);

    /// Throws Error when the device cannot be painted on.
    void begin();
    /// Throws Error when there is no further page.
    void print(const MessageRef &ref);
    void end();

private:
    /// What stands above the first bubble of a message, never alone at the end of a page.
    struct Lead
    {
        QString date;
        QString label;
    };

    QPagedPaintDevice &m_device;
    PrintedAttachments &m_attachments;
    QPainter m_painter;
    qreal m_point = 1; // device units
    qreal m_width = 0;
    qreal m_height = 0;
    qreal m_y = 0; // where the next thing goes
    std::optional<std::int64_t> m_lastDateLine;
    DateText m_dates;
    EmojiPictures m_emoji;
    QImage m_emptyPhoto;
    Lead m_lead;
    bool m_outgoing = false;

    QFont font(qreal points) const;
    void printSystemItem(const QString &text);
    void printAttachment(const _MsgAttachment &attachment);
    void printBubble(const QString &text);
    void printBubble(const QImage &picture);
    void takeLead(const MessageRef &ref);
    qreal leadHeight() const;
    void printLead();
    void printLabel();
    void newPage();
    void makeRoom(qreal height);
    /// As many lines as a page holds; true when those were all.
    bool fill(std::vector<PrintedLine> &lines, PrintedText &text, qreal height);
    void paintPart(const std::vector<PrintedLine> &lines, std::size_t count, qreal textWidth);
    QRectF bubbleAt(qreal width, qreal height);
};
