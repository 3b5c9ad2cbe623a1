#include "views/record_table.h"

#include "base/texts.h"
#include "personal/contact_words.h"
#include "personal/plain_text.h"
#include "views/contact_card.h"
#include "views/record_roles.h"

#include <QCache>
#include <QLocale>
#include <QPixmap>

namespace {
constexpr int dateWidth = 150;
constexpr int shortWidth = 90;
constexpr int titleWidth = 180;
constexpr int picturesKept = 500;
constexpr qsizetype longestNoteShown = 200'000;
constexpr int deepestNoteShown = 500;

QString dateText(const QDateTime &date)
{
    return date.isValid() ? QLocale::system().toString(date.toLocalTime(), QLocale::ShortFormat) : QString();
}

QString dayText(const CalendarEvent &event, const QDateTime &date)
{
    const QDateTime shown = shownDate(event, date);
    if (event.all_day != 0)
        return QLocale::system().toString(shown.date(), QLocale::ShortFormat);
    return QLocale::system().toString(shown, QLocale::ShortFormat);
}

// Sorting asks for a key many times.
std::function<QVariant(int)> textKeys(qsizetype rows, std::function<QString(int)> text)
{
    auto keys = std::make_shared<std::vector<QVariant>>(static_cast<std::size_t>(rows));
    return [keys, text = std::move(text)](int row) {
        QVariant &key = keys->at(static_cast<std::size_t>(row));
        if (!key.isValid())
            key = text(row).left(longestShown).toCaseFolded();
        return key;
    };
}

QString firstOf(const ContactRecord &contact, ContactDataKind kind)
{
    const auto rows = contact.rows.value(kind);
    return rows.isEmpty() ? QString() : rows.first().data(1);
}

QString contactSearch(const ContactRecord &contact)
{
    QString text;
    for (const auto &rows : contact.rows)
        for (const ContactDataRow &row : rows)
            for (int column = 1; column <= ContactDataRow::textColumns; ++column)
                if (const QString &value = row.data(column); !value.isEmpty())
                    text += value + QLatin1Char('\n');
    return text;
}

const char *callKind(const CallEntry &call)
{
    switch (call.type) {
    case static_cast<int>(CallType::Incoming):
        return "IDS_CALL_INCOMING";
    case static_cast<int>(CallType::Outgoing):
        return "IDS_CALL_OUTGOING";
    case static_cast<int>(CallType::Missed):
        return "IDS_CALL_MISSED";
    default:
        return "IDS_CALL_UNKNOWN";
    }
}

QString callName(const CallEntry &call)
{
    for (const QString &name : {call.person, call.name, call.address})
        if (!name.isEmpty())
            return name;
    return textFor("IDS_NUMBER_HIDDEN");
}

QString paragraph(const char *label, const QString &text)
{
    if (text.isEmpty())
        return {};
    return QStringLiteral("<p><span class=\"label\">%1</span><br/>%2</p>")
        .arg(textFor(label).toHtmlEscaped(),
             text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br/>")));
}

QString titleOr(const QString &title)
{
    return title.trimmed().isEmpty() ? textFor("IDS_NO_TITLE") : title;
}

QString heading(const QString &text)
{
    return QStringLiteral("<h2>%1</h2>").arg(text.toHtmlEscaped());
}

RecordTable contactsTable(const QList<ContactRecord> &all)
{
    RecordTable table;
    const auto column = [&all](const char *title, int width, QString (*text)(const ContactRecord &)) {
        const auto textOf = [&all, text](int row) { return text(all.at(row)); };
        return RecordColumn{title, width, false, textOf, textKeys(all.size(), textOf)};
    };
    table.columns = {column("IDS_COL_NAME", 0, contactTitle),
                     column("IDS_COL_PHONE", dateWidth, [](const ContactRecord &contact) {
                         return firstOf(contact, ContactDataKind::Phone);
                     })};
    table.searchText = [&all](int row) { return contactSearch(all.at(row)); };
    table.detail = [&all](int row) { return contactCard(all.at(row)); };
    table.identity = [&all](int row) { return QString::number(all.at(row).id); };
    // Decoded when they are first shown, and only so many kept.
    auto pictures = std::make_shared<QCache<int, QPixmap>>(picturesKept);
    table.picture = [&all, pictures](int row) -> QVariant {
        if (!pictures->contains(row))
            pictures->insert(row, new QPixmap(contactPicture(all.at(row))));
        return *pictures->object(row);
    };
    return table;
}

RecordTable callsTable(const QList<CallEntry> &all)
{
    RecordTable table;
    const auto name = [&all](int row) { return callName(all.at(row)); };
    table.columns = {
        {"IDS_COL_CONTACT", 0, false, name, textKeys(all.size(), name)},
        {"IDS_COL_KIND", shortWidth, false, [&all](int row) { return textFor(callKind(all.at(row))); },
         [&all](int row) { return all.at(row).type; }},
        {"IDS_COL_DATE", dateWidth, true, [&all](int row) { return dateText(all.at(row).date); },
         [&all](int row) { return all.at(row).date; }},
        {"IDS_COL_DURATION", shortWidth, true, [&all](int row) { return durationText(all.at(row).duration); },
         [&all](int row) { return all.at(row).duration; }}};
    table.searchText = [&all](int row) {
        const CallEntry &call = all.at(row);
        return QStringList{call.person, call.name, call.address}.join(QLatin1Char('\n'));
    };
    table.detail = [&all](int row) {
        const CallEntry &call = all.at(row);
        return heading(callName(call)) + paragraph("IDS_COL_KIND", textFor(callKind(call))) +
               paragraph("IDS_COL_NUMBER", call.address) + paragraph("IDS_COL_DATE", dateText(call.date)) +
               paragraph("IDS_COL_DURATION", durationText(call.duration));
    };
    table.identity = [&all](int row) { return QString::number(all.at(row).id); };
    return table;
}

// Laying out megabytes of text, or elements that are nested deeply, would hold up the window for minutes.
QString noteText(const NoteEntry &note)
{
    QString remark;
    QString body = note.content;
    if (body.size() > longestNoteShown) {
        const qsizetype wholeTags = body.lastIndexOf(QLatin1Char('<'), longestNoteShown);
        body.truncate(wholeTags > 0 ? wholeTags : longestNoteShown);
        remark = QStringLiteral("<p><i>%1</i></p>").arg(textFor("IDS_NOTE_TOO_LONG").toHtmlEscaped());
    }
    if (nestingOfHtml(body) > deepestNoteShown)
        body = QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>")
                   .arg(plainTextOfHtml(body).toHtmlEscaped());
    return heading(titleOr(note.title)) + remark + body;
}

RecordTable notesTable(const QList<NoteEntry> &all)
{
    RecordTable table;
    const auto title = [&all](int row) { return titleOr(all.at(row).title); };
    const auto summary = [&all](int row) { return all.at(row).summary; };
    table.columns = {{"IDS_COL_TITLE", titleWidth, false, title, textKeys(all.size(), title)},
                     {"IDS_COL_DATE", dateWidth, true,
                      [&all](int row) { return dateText(all.at(row).modified_date); },
                      [&all](int row) { return all.at(row).modified_date; }},
                     {"IDS_COL_SUMMARY", 0, false, summary, textKeys(all.size(), summary)}};
    table.searchText = [&all](int row) {
        return QString(all.at(row).title + QLatin1Char('\n') + all.at(row).summary + QLatin1Char('\n') +
                       plainTextOfHtml(all.at(row).content));
    };
    table.detail = [&all](int row) { return noteText(all.at(row)); };
    table.identity = [&all](int row) { return all.at(row).hash; };
    return table;
}

RecordTable calendarTable(const QList<CalendarEvent> &all)
{
    const auto title = [&all](int row) {
        return titleOr(all.at(row).summary.section(QLatin1Char('\n'), 0, 0));
    };
    RecordTable table;
    table.columns = {
        {"IDS_COL_TITLE", 0, false, title, textKeys(all.size(), title)},
        {"IDS_COL_START", dateWidth, true,
         [&all](int row) { return dayText(all.at(row), all.at(row).start_date); },
         [&all](int row) { return all.at(row).start_date; }},
        {"IDS_COL_LASTS", shortWidth, false,
         [&all](int row) { return all.at(row).all_day != 0 ? textFor("IDS_ALL_DAY") : QString(); },
         [&all](int row) { return all.at(row).all_day; }}};
    table.searchText = [&all](int row) {
        const CalendarEvent &event = all.at(row);
        return QStringList{event.summary, event.description, event.calendar, event.url}.join(
            QLatin1Char('\n'));
    };
    table.detail = [&all, title](int row) {
        const CalendarEvent &event = all.at(row);
        return heading(title(row)) + paragraph("IDS_COL_CALENDAR", event.calendar) +
               paragraph("IDS_COL_START", dayText(event, event.start_date)) +
               paragraph("IDS_COL_END", dayText(event, event.end_date)) +
               paragraph("IDS_COL_LASTS", event.all_day != 0 ? textFor("IDS_ALL_DAY") : QString()) +
               paragraph("IDS_COL_PLACE", event.summary.section(QLatin1Char('\n'), 1)) +
               paragraph("IDS_COL_REPEATS", event.rrule) +
               paragraph("IDS_COL_DESCRIPTION", event.description) + paragraph("IDS_COL_URL", event.url);
    };
    table.identity = [&all](int row) { return QString::number(all.at(row).id); };
    table.group = [&all](int row) { return all.at(row).calendar; };
    return table;
}
} // namespace

QString durationText(int seconds)
{
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(qAbs(seconds % 60), 2, 10, QLatin1Char('0'));
}

RecordTable makeRecordTable(DataClass dataClass, const RecordsPtr &records)
{
    RecordTable table;
    const auto fill = [&](const auto &all, auto make) {
        table = make(all);
        table.rows = static_cast<int>(all.size());
    };
    switch (dataClass) {
    case DataClass::Contacts:
        fill(std::get<QList<ContactRecord>>(*records), contactsTable);
        break;
    case DataClass::Calls:
        fill(std::get<QList<CallEntry>>(*records), callsTable);
        break;
    case DataClass::Notes:
        fill(std::get<QList<NoteEntry>>(*records), notesTable);
        break;
    case DataClass::Calendar:
        fill(std::get<QList<CalendarEvent>>(*records), calendarTable);
        break;
    default:
        break;
    }
    table.records = records;
    return table;
}
