#include "work/save_records.h"

#include "base/error.h"
#include "base/texts.h"
#include "personal/bookmark_db.h"
#include "personal/calendar_db.h"
#include "personal/contact_words.h"
#include "personal/local_call_history_db.h"
#include "personal/local_contacts_db.h"
#include "personal/notes_db.h"
#include "personal/personal_source.h"

#include <type_traits>

namespace {
/// Rolls back unless committed.
class StoreJob
{
public:
    explicit StoreJob(AbsLocalDb &store) : m_store(store) { m_store.begin(); }
    ~StoreJob()
    {
        if (!m_committed)
            m_store.rollback();
    }
    StoreJob(const StoreJob &) = delete;
    StoreJob &operator=(const StoreJob &) = delete;

    void commit()
    {
        m_store.commit();
        m_committed = true;
    }

private:
    AbsLocalDb &m_store;
    bool m_committed = false;
};

void count(SaveResult &result, bool wasThere)
{
    ++result.handled;
    ++(wasThere ? result.merged : result.added);
}

SaveResult saveContacts(PersonalSource &source, const QString &folder, Progress &progress)
{
    const QList<ContactRecord> contacts = source.contacts();
    LocalContactsDb store(folder);
    store.open();
    StoreJob job(store);
    const IOSContactCombineRule rule;
    CountedProgress counted(progress, textFor("IDS_BACKUPING_CONTACTS"), QStringLiteral("Contacts:%1/%2"),
                            contacts.size());
    SaveResult result;
    for (const ContactRecord &contact : contacts) {
        counted.item();
        count(result, store.save(contact, rule).merged);
    }
    job.commit();
    return result;
}

SaveResult saveCalls(PersonalSource &source, const QString &folder, Progress &progress)
{
    const QList<CallEntry> calls = source.calls();
    LocalCallHistoryDb store(folder);
    store.open();
    StoreJob job(store);
    CountedProgress counted(progress, textFor("IDS_BACKUPING_CALLS"), QStringLiteral("Calls:%1 / %2"),
                            calls.size());
    SaveResult result;
    for (const CallEntry &call : calls) {
        counted.item();
        count(result, store.add(call).wasThere);
    }
    job.commit();
    return result;
}

SaveResult saveNotes(PersonalSource &source, const QString &folder, Progress &progress)
{
    const QList<NoteEntry> notes = source.notes();
    LocalNotesDb store(folder);
    store.open();
    StoreJob job(store);
    CountedProgress counted(progress, textFor("IDS_BACKUPING_NOTES"), QStringLiteral("Notes:%1 / %2"),
                            notes.size());
    SaveResult result;
    for (const NoteEntry &note : notes) {
        counted.item();
        count(result, store.save(note));
    }
    job.commit();
    return result;
}

SaveResult saveCalendar(PersonalSource &source, const QString &folder, Progress &progress)
{
    const QList<CalendarEvent> events = source.calendar();
    LocalCalendarsDb store(folder);
    store.open();
    StoreJob job(store);
    CountedProgress counted(progress, textFor("IDS_BACKUPING_CALENDAR_ITEMS"),
                            QStringLiteral("Calendar event:%1 / %2"), events.size());
    SaveResult result;
    for (const CalendarEvent &event : events) {
        counted.item();
        count(result, store.save(event).wasThere);
    }
    job.commit();
    return result;
}

void saveBookmarkNode(LocalBookmarkDb &store, const BookmarkNode &node, qint64 parent,
                      CountedProgress &counted, SaveResult &result)
{
    const bool isFolder = node.type == BookmarkNode::folder;
    if (!isFolder)
        counted.item();
    const LocalBookmarkDb::Row row = store.saveRow(node, parent);
    if (!isFolder)
        count(result, !row.inserted);
    for (const auto &child : node.children)
        saveBookmarkNode(store, *child, row.id, counted, result);
}

SaveResult saveBookmarks(PersonalSource &source, const QString &folder, Progress &progress)
{
    const BookmarkTree tree = source.bookmarks();
    LocalBookmarkDb store(folder);
    store.open();
    StoreJob job(store);
    CountedProgress counted(progress, textFor("IDS_BACKUPING_BOOKMARKS"), QStringLiteral("Bookmarks:%1 / %2"),
                            countBookmarks(tree));
    SaveResult result;
    for (const auto &node : tree)
        saveBookmarkNode(store, *node, 0, counted, result);
    job.commit();
    return result;
}

template <typename Store>
void removeAll(const QString &folder, const QStringList &ids)
{
    Store store(folder);
    if (!store.openExisting())
        throw Error(QStringLiteral("%1 does not exist").arg(store.path()));
    StoreJob job(store);
    QStringList unique = ids;
    unique.removeDuplicates();
    for (const QString &id : std::as_const(unique)) {
        bool removed = false;
        if constexpr (std::is_same_v<Store, LocalNotesDb>) {
            removed = store.remove(id);
        } else {
            bool isNumber = false;
            const qint64 number = id.toLongLong(&isNumber);
            removed = isNumber && store.remove(number);
        }
        if (!removed)
            throw Error(QStringLiteral("there is no record \"%1\" in %2").arg(id, store.path()));
    }
    job.commit();
}
} // namespace

SaveResult saveRecords(DataClass dataClass, PersonalSource &source, const QString &folder, Progress &progress)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return saveContacts(source, folder, progress);
    case DataClass::Calls:
        return saveCalls(source, folder, progress);
    case DataClass::Notes:
        return saveNotes(source, folder, progress);
    case DataClass::Calendar:
        return saveCalendar(source, folder, progress);
    case DataClass::Bookmarks:
        return saveBookmarks(source, folder, progress);
    default:
        throw Error(QStringLiteral("%1 are not kept in local databases").arg(dataClassName(dataClass)));
    }
}

QString saveText(DataClass dataClass, const SaveResult &result)
{
    switch (dataClass) {
    case DataClass::Contacts:
        if (result.merged > 0)
            return textFor("IDS_SUC_BACKUP_%1_CONTACTS_MERGED_%2").arg(result.handled).arg(result.merged);
        return textFor("IDS_SUC_BACKUP_%1_CONTACTS").arg(result.handled);
    case DataClass::Calls:
        return textFor("IDS_SUC_BACKUP_%1_CALLS").arg(result.handled);
    case DataClass::Notes:
        return textFor("IDS_SUC_BACKUP_%1_NOTES").arg(result.handled);
    case DataClass::Calendar:
        return textFor("IDS_SUC_BACKUP_%1_CALENDAR_ITEMS").arg(result.handled);
    case DataClass::Bookmarks:
        return textFor("IDS_SUC_BACKUP_%1_BOOKMARKS").arg(result.handled);
    default:
        return {};
    }
}

void removeRecords(DataClass dataClass, const QString &folder, const QStringList &ids)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return removeAll<LocalContactsDb>(folder, ids);
    case DataClass::Calls:
        return removeAll<LocalCallHistoryDb>(folder, ids);
    case DataClass::Notes:
        return removeAll<LocalNotesDb>(folder, ids);
    case DataClass::Calendar:
        return removeAll<LocalCalendarsDb>(folder, ids);
    case DataClass::Bookmarks:
        return removeAll<LocalBookmarkDb>(folder, ids);
    default:
        throw Error(QStringLiteral("%1 are not kept in local databases").arg(dataClassName(dataClass)));
    }
}
