#include "personal/personal_source.h"

#include "backup/file_source.h"
#include "base/report.h"
#include "personal/bookmark_db.h"
#include "personal/calendar_db.h"
#include "personal/ios_call_history_db.h"
#include "personal/ios_contacts_db.h"
#include "personal/local_call_history_db.h"
#include "personal/local_contacts_db.h"
#include "personal/notes_db.h"

namespace {
SourceFile homeFile(const char *path)
{
    return {QStringLiteral("HomeDomain"), QLatin1String(path)};
}

class DeviceRecords : public PersonalSource
{
public:
    DeviceRecords(FileSource &files, const QString &deviceId)
        : m_files(files),
          m_contacts(files),
          m_calls(files),
          m_notes(files, deviceId),
          m_calendar(files),
          m_bookmarks(files)
    {
    }

    QList<ContactRecord> contacts(Scope scope, Report &report) override { return m_contacts.readAll(scope, report); }
    QList<CallEntry> calls(Scope, Report &report) override { return m_calls.readAll(report); }
    QList<NoteEntry> notes(Scope scope, Report &report) override { return m_notes.readAll(scope, report); }
    QList<CalendarEvent> calendar(Scope scope, Report &report) override { return m_calendar.readAll(scope, report); }
    BookmarkTree bookmarks(Scope scope, Report &report) override { return m_bookmarks.readTree(scope, report); }

    std::optional<qint64> count(DataClass dataClass, Report &report) override
    {
        const std::optional<qint64> readable = PersonalSource::count(dataClass, report);
        const bool hidesOthers = dataClass == DataClass::Notes && m_notes.countInNewerStore() != 0;
        return hidesOthers ? std::nullopt : readable;
    }

    bool has(DataClass dataClass) const override
    {
        switch (dataClass) {
        case DataClass::Contacts:
            return m_files.lists(homeFile("Library/AddressBook/AddressBook.sqlitedb"));
        case DataClass::Calls:
            return m_files.lists(homeFile("Library/CallHistoryDB/CallHistory.storedata")) ||
                   m_files.lists({QStringLiteral("WirelessDomain"),
                                       QStringLiteral("Library/CallHistory/call_history.db")});
        case DataClass::Notes:
            return m_files.lists(homeFile("Library/Notes/notes.sqlite")) || m_notes.hasNewerStore();
        case DataClass::Calendar:
            return m_files.lists(homeFile("Library/Calendar/Calendar.sqlitedb"));
        case DataClass::Bookmarks:
            return m_files.lists(homeFile("Library/Safari/Bookmarks.db"));
        default:
            return false;
        }
    }

private:
    FileSource &m_files;
    IOSContactsDb m_contacts;
    IOSCallHistoryDb m_calls;
    IOSNotesDb m_notes;
    IOSCalendarDb m_calendar;
    IOSBookmarkDb m_bookmarks;
};

class LocalRecords : public PersonalSource
{
public:
    explicit LocalRecords(const QString &folder)
        : m_contacts(folder), m_calls(folder), m_notes(folder), m_calendar(folder), m_bookmarks(folder)
    {
    }

    QList<ContactRecord> contacts(Scope, Report &report) override
    {
        return m_contacts.openExisting() ? m_contacts.readAll(report) : QList<ContactRecord>();
    }
    QList<CallEntry> calls(Scope, Report &report) override
    {
        return m_calls.openExisting() ? m_calls.readAll(report) : QList<CallEntry>();
    }
    QList<NoteEntry> notes(Scope, Report &report) override
    {
        return m_notes.openExisting() ? m_notes.readAll(report) : QList<NoteEntry>();
    }
    QList<CalendarEvent> calendar(Scope, Report &report) override
    {
        return m_calendar.openExisting() ? m_calendar.readAll(report) : QList<CalendarEvent>();
    }
    BookmarkTree bookmarks(Scope, Report &report) override
    {
        return m_bookmarks.openExisting() ? m_bookmarks.readTree(report) : BookmarkTree();
    }

    // Counted by the store itself: local databases are counted whenever the window starts.
    std::optional<qint64> count(DataClass dataClass, Report &) override
    {
        const auto countOf = [](auto &store) { return store.openExisting() ? store.count() : 0; };
        switch (dataClass) {
        case DataClass::Contacts:
            return countOf(m_contacts);
        case DataClass::Calls:
            return countOf(m_calls);
        case DataClass::Notes:
            return countOf(m_notes);
        case DataClass::Calendar:
            return countOf(m_calendar);
        case DataClass::Bookmarks:
            return countOf(m_bookmarks);
        default:
            return 0;
        }
    }

    bool has(DataClass dataClass) const override
    {
        return dataClass == DataClass::Contacts || dataClass == DataClass::Calls ||
               dataClass == DataClass::Notes || dataClass == DataClass::Calendar ||
               dataClass == DataClass::Bookmarks;
    }

private:
    LocalContactsDb m_contacts;
    LocalCallHistoryDb m_calls;
    LocalNotesDb m_notes;
    LocalCalendarsDb m_calendar;
    LocalBookmarkDb m_bookmarks;
};
} // namespace

std::optional<qint64> PersonalSource::count(DataClass dataClass, Report &report)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return contacts(Scope::Usual, report).size();
    case DataClass::Calls:
        return calls(Scope::Usual, report).size();
    case DataClass::Notes:
        return notes(Scope::Usual, report).size();
    case DataClass::Calendar:
        return calendar(Scope::Usual, report).size();
    case DataClass::Bookmarks:
        return countBookmarks(bookmarks(Scope::Usual, report));
    default:
        return 0;
    }
}

std::unique_ptr<PersonalSource> openDeviceRecords(FileSource &files, const QString &deviceId)
{
    return std::make_unique<DeviceRecords>(files, deviceId);
}

std::unique_ptr<PersonalSource> openLocalRecords(const QString &folder)
{
    return std::make_unique<LocalRecords>(folder);
}
