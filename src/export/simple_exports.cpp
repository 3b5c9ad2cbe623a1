#include "export/simple_exports.h"

#include "base/error.h"
#include "base/texts.h"
#include "export/attachment_copies.h"
#include "export/page_policy.h"
#include "export/text_file.h"
#include "personal/plain_text.h"

#include <QDir>
#include <QRegularExpression>
#include <QHash>
#include <QSet>
#include <QUuid>

#include <algorithm>

namespace {
QString dayText(const CalendarEvent &event, const QDateTime &date)
{
    return shownDate(event, date).toString(QStringLiteral("yyyyMMdd"));
}

QString timeText(const QDateTime &date)
{
    return date.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

QString freshUid()
{
    static const QRegularExpression forbidden(QStringLiteral("[^A-Z0-9\\-]"));
    return QUuid::createUuid().toString().toUpper().remove(forbidden);
}

void writeICalendarEvent(TextFile &file, const CalendarEvent &event, const QDate &day)
{
    file.writeLine(QStringLiteral("BEGIN:VEVENT"));
    if (event.start_date.isValid())
        file.writeLine(QStringLiteral("DTSTART;VALUE=DATE:") + dayText(event, event.start_date));
    if (event.end_date.isValid())
        file.writeLine(QStringLiteral("DTEND;VALUE=DATE:") + dayText(event, event.end_date));
    file.writeLine(QStringLiteral("DTSTAMP:%1T000000Z").arg(day.toString(QStringLiteral("yyyyMMdd"))));
    if (!event.rrule.isEmpty())
        file.writeLine(QStringLiteral("RRULE:") + event.rrule);
    file.writeLine(QStringLiteral("SUMMARY:") + event.summary);
    file.writeLine(QStringLiteral("LOCATION:"));
    file.writeLine(QStringLiteral("DESCRIPTION:") + event.description);
    file.writeLine(QStringLiteral("UID:") + freshUid());
    file.writeLine(QStringLiteral("END:VEVENT"));
}

QString flagOf(const CallEntry &call)
{
    switch (call.type) {
    case static_cast<int>(CallType::Incoming):
        return QStringLiteral("Incoming");
    case static_cast<int>(CallType::Outgoing):
        return QStringLiteral("Outgoing");
    default:
        return QStringLiteral("Blocked");
    }
}

constexpr int callFieldWidths[] = {15, 20, 20, 25, 15};

QString callLine(const QStringList &fields, CallFormat format)
{
    if (format == CallFormat::Csv)
        return fields.join(QLatin1Char(','));
    QString line;
    for (qsizetype i = 0; i < fields.size(); ++i)
        line += fields.at(i).leftJustified(callFieldWidths[i]);
    return line;
}

QString bookmarkText(const QString &text)
{
    static const QRegularExpression lineBreak(QStringLiteral("[\\r\\n]+"));
    return QString(text).replace(lineBreak, QStringLiteral(" ")).toHtmlEscaped();
}

void writeBookmark(TextFile &file, const BookmarkNode &node, CountedProgress &progress)
{
    if (node.type != BookmarkNode::folder) {
        progress.item();
        file.writeLine(QStringLiteral("<DT><A HREF=\"") + bookmarkText(node.url) + QStringLiteral("\">") +
                       bookmarkText(node.title) + QStringLiteral("</A></DT>"));
        return;
    }
    file.writeLine(QStringLiteral("<DT><H3>") + bookmarkText(node.title) + QStringLiteral("</H3>"));
    file.writeLine(QStringLiteral("<DL>"));
    std::vector<const BookmarkNode *> children;
    for (const auto &child : node.children)
        children.push_back(child.get());
    std::stable_sort(children.begin(), children.end(),
                     [](const auto *a, const auto *b) { return a->order_index < b->order_index; });
    for (const BookmarkNode *child : children)
        writeBookmark(file, *child, progress);
    file.writeLine(QStringLiteral("</DL>"));
    file.writeLine(QStringLiteral("</DT>"));
}

qint64 bookmarksIn(const BookmarkTree &tree)
{
    qint64 count = 0;
    for (const auto &node : tree)
        count += node->type == BookmarkNode::folder ? bookmarksIn(node->children) : 1;
    return count;
}

QString noteFileName(const NoteEntry &note)
{
    constexpr qsizetype longestTitle = 20;
    static const QRegularExpression forbidden(QStringLiteral("[\\\\/:*?\"<>|\\n\\r\\t\\x00]+"));
    const QString title = firstCharacters(QString(note.title).remove(forbidden), longestTitle);
    const QString key = note.create_date.isValid()
                            ? note.create_date.toLocalTime().toString(QStringLiteral("yyyyMMdd-hhmmss"))
                            : QStringLiteral("undated");
    return key + QLatin1Char('-') + title + QStringLiteral(".html");
}

QString notePage(const NoteEntry &note)
{
    return QStringLiteral(
               "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
               "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">\n"
               "<html xmlns=\"http://www.w3.org/1999/xhtml\">\n"
               "<head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\n") +
           QLatin1String(inertPage) + QStringLiteral("\n<title>") + note.title.toHtmlEscaped() +
           QStringLiteral("</title></head><body>\n") + note.content + QStringLiteral("\n</body></html>\n");
}

Report written(qint64 records)
{
    Report report;
    report.done = records;
    return report;
}

/// What this form of a calendar has no place for.
Report writtenEvents(const QList<CalendarEvent> &events, CalendarFormat format)
{
    const auto tell = [&events](Report &report, const char *what, auto isConcerned) {
        const auto count = std::count_if(events.begin(), events.end(), isConcerned);
        if (count > 0)
            report.add({.kind = IssueKind::LeftOut, .what = what, .count = count});
    };
    Report report = written(events.size());
    if (format == CalendarFormat::ICalendar)
        tell(report, "IDS_ISSUE_TIMES_NOT_WRITTEN",
             [](const CalendarEvent &event) { return event.all_day == 0; });
    tell(report, "IDS_ISSUE_ADDRESSES_NOT_WRITTEN",
         [](const CalendarEvent &event) { return !event.url.isEmpty(); });
    return report;
}

/// True when a file with other content was there.
bool replacePage(const QString &path, const QByteArray &page)
{
    QFile former(path);
    const bool isOther = former.open(QIODevice::ReadOnly) && former.readAll() != page;
    former.close();
    writeWholeFile(path, page);
    return isOther;
}

bool refersToServer(const QString &html)
{
    static const QRegularExpression remote(
        QStringLiteral(
            "(\\b(src|srcset|poster|background|data)\\s*=\\s*[\"']?|url\\(\\s*[\"']?)\\s*(https?:)?//"),
        QRegularExpression::CaseInsensitiveOption);
    return remote.match(html).hasMatch();
}
} // namespace

Report exportCalendar(const QList<CalendarEvent> &events, CalendarFormat format, const QString &path,
                      const QDate &day, Progress &progress)
{
    TextFile file(path);
    CountedProgress counted(progress, textFor("IDS_EXPORTING_CALENDAR_ITEMS"), QStringLiteral("%1 / %2"),
                            events.size());
    file.keepWhenCancelled([&] {
        if (format == CalendarFormat::Csv)
            file.writeLine(QStringLiteral("Summary,Start Date,End Date,RRule,Description"));
        else
            file.write(QStringLiteral("BEGIN:VCALENDAR\nPRODID:-//Quillbarrow Ltd//%1//EN\nVERSION:2.0\n"
                                      "CALSCALE:GREGORIAN\nMETHOD:PUBLISH\n")
                           .arg(textFor("IDS_PRODUCT_NAME")));
        for (const CalendarEvent &event : events) {
            counted.item();
            if (format == CalendarFormat::Csv)
                file.writeLine(QStringList{event.summary, timeText(shownDate(event, event.start_date)),
                                           timeText(shownDate(event, event.end_date)), event.rrule,
                                           event.description}
                                   .join(QLatin1Char(',')));
            else
                writeICalendarEvent(file, event, day);
        }
        if (format == CalendarFormat::ICalendar)
            file.writeLine(QStringLiteral("END:VCALENDAR"));
    });
    return writtenEvents(events, format);
}

Report exportCalls(const QList<CallEntry> &calls, CallFormat format, const QString &path, Progress &progress)
{
    TextFile file(path);
    CountedProgress counted(progress, {}, QStringLiteral("%1 / %2"), calls.size());
    file.keepWhenCancelled([&] {
        file.writeLine(callLine({QStringLiteral("Flag"), QStringLiteral("Number"), QStringLiteral("Contact"),
                                 QStringLiteral("Date"), QStringLiteral("Duration")},
                                format));
        for (const CallEntry &call : calls) {
            counted.item();
            file.writeLine(callLine({flagOf(call), call.address, call.person,
                                     timeText(call.date.toLocalTime()), QString::number(call.duration)},
                                    format));
        }
    });
    return written(calls.size());
}

Report exportBookmarks(const BookmarkTree &tree, const QString &path, Progress &progress)
{
    TextFile file(path);
    CountedProgress counted(progress, textFor("IDS_EXPORTING_BOOKMARKS"), QStringLiteral("%1 / %2"),
                            bookmarksIn(tree));
    file.keepWhenCancelled([&] {
        file.writeLine(
            QStringLiteral("<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">"));
        file.writeLine(QStringLiteral("<TITLE>Bookmarks</TITLE>"));
        // A bookmark may be a script, which a click on the page would run.
        // Elements of this layout are not closed.
        file.writeLine(QString(QLatin1String(inertPage)).replace(QStringLiteral(" />"), QStringLiteral(">")));
        file.writeLine(QStringLiteral("<DL>"));
        for (const auto &node : tree)
            writeBookmark(file, *node, counted);
        file.writeLine(QStringLiteral("</DL>"));
    });
    return written(counted.done());
}

Report exportNotes(const QList<NoteEntry> &notes, const QString &folder, Progress &progress)
{
    makeFolder(folder);
    Report report;
    CountedProgress counted(progress, textFor("IDS_EXPORTING_NOTES"), QStringLiteral("Notes:%1 / %2"),
                            notes.size());
    QHash<QString, QString> written; // wanted name and content -> the name that it got
    QHash<QString, int> numbers;     // the last one given to a wanted name
    QSet<QString> taken;
    for (const NoteEntry &note : notes) {
        counted.item();
        const QString page = notePage(note);
        // Notes that differ must not meet in one file, also where they share title and date.
        const QString base = noteFileName(note);
        QString &name = written[base + QLatin1Char('\n') + page];
        if (name.isEmpty()) {
            name = base;
            while (taken.contains(name))
                name = base.chopped(5) + QStringLiteral("(%1).html").arg(++numbers[base]);
            taken.insert(name);
        }
        if (replacePage(QDir(folder).filePath(name), page.toUtf8()))
            report.add({.kind = IssueKind::Remark, .what = "IDS_ISSUE_FILES_REPLACED", .where = name});
        ++report.done;
        if (refersToServer(note.content))
            report.add({.kind = IssueKind::Remark, .what = "IDS_ISSUE_NOTES_REFER_TO_SERVER", .where = name});
    }
    return report;
}
