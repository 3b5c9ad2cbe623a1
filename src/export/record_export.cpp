#include "export/record_export.h"

#include "base/app_folders.h"
#include "base/error.h"
#include "base/source_guard.h"
#include "export/contacts_export.h"

namespace {
[[noreturn]] void refuse(const QString &format)
{
    throw Error(QStringLiteral("there is no format \"%1\" for these records").arg(format));
}

struct Writer
{
    const QString &format;
    const QString &target;
    Progress &progress;

    bool is(const char *name) const { return format == QLatin1String(name); }
    void require(const char *name) const
    {
        if (!is(name))
            refuse(format);
    }

    Report operator()(const QList<ContactRecord> &contacts) const
    {
        const ContactFormat chosen = is("vcard")  ? ContactFormat::VCard
                                     : is("csv")  ? ContactFormat::Csv
                                     : is("text") ? ContactFormat::Text
                                     : is("html") ? ContactFormat::Html
                                                  : (refuse(format), ContactFormat::VCard);
        return exportContacts(contacts, chosen, target, progress);
    }

    Report operator()(const QList<CallEntry> &calls) const
    {
        if (!is("csv"))
            require("text");
        return exportCalls(calls, is("csv") ? CallFormat::Csv : CallFormat::Text, target, progress);
    }

    Report operator()(const QList<CalendarEvent> &events) const
    {
        if (!is("csv"))
            require("ical");
        return exportCalendar(events, is("csv") ? CalendarFormat::Csv : CalendarFormat::ICalendar, target,
                              QDate::currentDate(), progress);
    }

    Report operator()(const QList<NoteEntry> &notes) const
    {
        require("html");
        return exportNotes(notes, target, progress);
    }

    Report operator()(const std::shared_ptr<const BookmarkTree> &tree) const
    {
        require("html");
        return exportBookmarks(*tree, target, progress);
    }
};
} // namespace

Report exportRecords(const RecordSelection &selection, const QString &format, const QString &target,
                     Progress &progress)
{
    const SourceGuard localDatabases({localDatabasesFolder().path()}, SourceGuard::Reach::ThisThread);
    return std::visit(Writer{format, target, progress}, selection);
}
