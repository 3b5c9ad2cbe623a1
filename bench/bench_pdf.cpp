#include "bench_table.h"

#include "export/message_export.h"
#include "export/message_text.h"
#include "messages/ios6_message_db.h"
#include "resources/resources.h"
#include "sample/sample_maker.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTextLayout>

#include <climits>
#include <cstdlib>

namespace {
constexpr int messages = 10000;
constexpr int chats = 20;
constexpr int ios = 17;
constexpr double limit = 3;
constexpr double margin = 20;
constexpr double widestText = 0.75; // of the page

QPageLayout pageLayout()
{
    return {QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(margin, margin, margin, margin),
            QPageLayout::Point};
}

QFont fontOf(const QPdfWriter &writer)
{
    QFont font;
    font.setPixelSize(qRound(12 * writer.logicalDpiY() / 72.0));
    return font;
}

/// What all messages say, broken into the lines that the bubbles have.
QStringList linesOf(const std::vector<MessageRef> &refs)
{
    QPdfWriter writer(QStringLiteral("unused"));
    writer.setPageLayout(pageLayout());
    QStringList lines;
    for (const MessageRef &ref : refs) {
        const QString text =
            ref.message->item_type != 0 ? systemText(*ref.message) : messageBody(*ref.message);
        for (const QString &paragraph : text.split(QLatin1Char('\n'))) {
            QTextLayout layout(paragraph, fontOf(writer));
            layout.beginLayout();
            for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
                line.setLineWidth(writer.width() * widestText);
                lines += paragraph.mid(line.textStart(), line.textLength());
            }
            layout.endLayout();
        }
    }
    return lines;
}

void paintLines(const QStringList &lines, const QString &path)
{
    QPdfWriter writer(path);
    writer.setPageLayout(pageLayout());
    QPainter painter(&writer);
    painter.setFont(fontOf(writer));
    const qreal step = painter.fontMetrics().height();
    qreal y = step;
    for (const QString &line : lines) {
        if (y > writer.height()) {
            writer.newPage();
            y = step;
        }
        painter.drawText(QPointF(0, y), line);
        y += step;
    }
}
} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    initResources();
    const QTemporaryDir folder;
    const QString database = folder.filePath(QStringLiteral("sms.db"));
    makeMessageDatabase(database, ios, messages, chats, 1);
    IOS6MessageDb db(database, nullptr, ContactNames::AsStored);
    NoProgress progress;
    db.loadChats();
    db.loadMessages(0, progress);
    const std::vector<MessageRef> refs = db.select({}, INT_MIN, INT_MAX);
    const QStringList lines = linesOf(refs);

    bench::compare(
        "PDF of 10,000 messages, against their lines painted", limit,
        [&] {
            const QTemporaryDir target;
            const auto summary = exportMessages(refs, MessageFormat::Pdf, target.path(), nullptr, progress);
            if (static_cast<std::size_t>(summary.report.done) != refs.size())
                std::abort();
        },
        [&] { paintLines(lines, folder.filePath(QStringLiteral("lines.pdf"))); });
}
