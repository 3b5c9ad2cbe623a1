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
#include "personal/store_job.h"

#include <type_traits>

namespace {
/// Where the records come from, and where it is told what does not come with them.
struct Reading
{
    PersonalSource &source;
    Scope scope;
    Report &report;
};

/// What a job says while it runs, and in the end.
struct SaveTexts
{
    const char *status; // key
    const char *counter;
    const char *differing; // key: of those that were there already, and not as they came
};

/// What came of one record.
struct SavedRecord
{
    bool wasThere = false;
    qint64 differing = 0;
};

void count(SaveReport &result, const SavedRecord &saved, const SaveTexts &texts)
{
    ++(saved.wasThere ? result.merged : result.added);
    if (saved.differing > 0)
        result.report.add({.kind = IssueKind::LeftOut, .what = texts.differing, .count = saved.differing});
}

/// `save` puts one record into the store and gives a SavedRecord.
template <typename Store, typename Record, typename Save>
SaveReport saveEach(const QList<Record> &records, const QString &folder, const SaveTexts &texts,
                    Progress &progress, Save save)
{
    Store store(folder);
    store.open();
    StoreJob job(store);
    CountedProgress counted(progress, textFor(texts.status), QLatin1String(texts.counter), records.size());
    SaveReport result;
    for (const Record &record : records) {
        counted.item();
        count(result, save(store, record), texts);
    }
    job.commit();
    return result;
}

template <typename Saved>
SavedRecord savedRecord(const Saved &saved)
{
    return {saved.wasThere, saved.differs ? 1 : 0};
}

SaveReport saveContacts(const Reading &reading, const QString &folder, Progress &progress)
{
    const IOSContactCombineRule rule;
    return saveEach<LocalContactsDb>(
        reading.source.contacts(reading.scope, reading.report), folder,
        {"IDS_BACKUPING_CONTACTS", "Contacts:%1/%2", "IDS_ISSUE_CONTACT_ENTRIES_REPLACED"}, progress,
        [&rule](auto &store, const auto &contact) {
            const auto saved = store.save(contact, rule);
            return SavedRecord{saved.merged, saved.replaced};
        });
}

SaveReport saveCalls(const Reading &reading, const QString &folder, Progress &progress)
{
    return saveEach<LocalCallHistoryDb>(
        reading.source.calls(reading.scope, reading.report), folder,
        {"IDS_BACKUPING_CALLS", "Calls:%1 / %2", "IDS_ISSUE_CALLS_KEPT"}, progress,
        [](auto &store, const auto &call) { return savedRecord(store.add(call)); });
}

SaveReport saveNotes(const Reading &reading, const QString &folder, Progress &progress)
{
    return saveEach<LocalNotesDb>(
        reading.source.notes(reading.scope, reading.report), folder,
        {"IDS_BACKUPING_NOTES", "Notes:%1 / %2", "IDS_ISSUE_NOTE_DATES_REPLACED"}, progress,
        [](auto &store, const auto &note) { return savedRecord(store.save(note)); });
}

SaveReport saveCalendar(const Reading &reading, const QString &folder, Progress &progress)
{
    return saveEach<LocalCalendarsDb>(
        reading.source.calendar(reading.scope, reading.report), folder,
        {"IDS_BACKUPING_CALENDAR_ITEMS", "Calendar event:%1 / %2", "IDS_ISSUE_EVENTS_KEPT"}, progress,
        [](auto &store, const auto &event) { return savedRecord(store.save(event)); });
}

void saveBookmarkNode(LocalBookmarkDb &store, const BookmarkNode &node, qint64 parent,
                      CountedProgress &counted, const SaveTexts &texts, SaveReport &result)
{
    const bool isFolder = node.type == BookmarkNode::folder;
    if (!isFolder)
        counted.item();
    const LocalBookmarkDb::Row row = store.saveRow(node, parent);
    if (!isFolder)
        count(result, {!row.inserted, row.differs ? 1 : 0}, texts);
    for (const auto &child : node.children)
        saveBookmarkNode(store, *child, row.id, counted, texts, result);
}

SaveReport saveBookmarks(const Reading &reading, const QString &folder, Progress &progress)
{
    const BookmarkTree tree = reading.source.bookmarks(reading.scope, reading.report);
    LocalBookmarkDb store(folder);
    store.open();
    StoreJob job(store);
    const SaveTexts texts{"IDS_BACKUPING_BOOKMARKS", "Bookmarks:%1 / %2", "IDS_ISSUE_BOOKMARKS_KEPT"};
    CountedProgress counted(progress, textFor(texts.status), QLatin1String(texts.counter),
                            countBookmarks(tree));
    SaveReport result;
    for (const auto &node : tree)
        saveBookmarkNode(store, *node, 0, counted, texts, result);
    job.commit();
    return result;
}

/// The identity of a record of a store, as it is shown.
template <typename Store>
bool removeOne(Store &store, const QString &id)
{
    if constexpr (std::is_same_v<Store, LocalNotesDb>) {
        return store.remove(id);
    } else {
        bool isNumber = false;
        const qint64 number = id.toLongLong(&isNumber);
        return isNumber && store.remove(number);
    }
}

template <typename Store>
void removeAll(const QString &folder, const QStringList &ids, Progress &progress)
{
    Store store(folder);
    if (!store.openExisting())
        throw Error(QStringLiteral("%1 does not exist").arg(store.path()));
    StoreJob job(store);
    QStringList unique = ids;
    unique.removeDuplicates();
    CountedProgress counted(progress, textFor("IDS_DELETING"), QStringLiteral("%1 / %2"), unique.size());
    for (const QString &id : std::as_const(unique)) {
        counted.item();
        if (!removeOne(store, id))
            throw Error(QStringLiteral("there is no record \"%1\" in %2").arg(id, store.path()));
    }
    // Once, and after all: a bookmark may be named together with the folder that holds it.
    if constexpr (requires { store.removeLeftovers(); })
        store.removeLeftovers();
    job.commit();
}

SaveReport saveClass(DataClass dataClass, const Reading &reading, const QString &folder, Progress &progress)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return saveContacts(reading, folder, progress);
    case DataClass::Calls:
        return saveCalls(reading, folder, progress);
    case DataClass::Notes:
        return saveNotes(reading, folder, progress);
    case DataClass::Calendar:
        return saveCalendar(reading, folder, progress);
    case DataClass::Bookmarks:
        return saveBookmarks(reading, folder, progress);
    default:
        throw Error(QStringLiteral("%1 are not kept in local databases").arg(dataClassName(dataClass)));
    }
}
} // namespace

SaveReport saveRecords(DataClass dataClass, PersonalSource &source, Scope scope, const QString &folder,
                       Progress &progress)
{
    Report report;
    SaveReport result = saveClass(dataClass, {source, scope, report}, folder, progress);
    report.merge(result.report);
    result.report = std::move(report);
    return result;
}

namespace {
QString doneText(DataClass dataClass, const SaveReport &result)
{
    switch (dataClass) {
    case DataClass::Contacts:
        if (result.merged > 0)
            return textFor("IDS_SUC_BACKUP_%1_CONTACTS_MERGED_%2").arg(result.handled()).arg(result.merged);
        return textFor("IDS_SUC_BACKUP_%1_CONTACTS").arg(result.handled());
    case DataClass::Calls:
        return textFor("IDS_SUC_BACKUP_%1_CALLS").arg(result.handled());
    case DataClass::Notes:
        return textFor("IDS_SUC_BACKUP_%1_NOTES").arg(result.handled());
    case DataClass::Calendar:
        return textFor("IDS_SUC_BACKUP_%1_CALENDAR_ITEMS").arg(result.handled());
    case DataClass::Bookmarks:
        return textFor("IDS_SUC_BACKUP_%1_BOOKMARKS").arg(result.handled());
    default:
        return {};
    }
}
} // namespace

QString saveText(DataClass dataClass, const SaveReport &result)
{
    const bool tellsMerged = dataClass == DataClass::Contacts; // in its own text
    const QString text = doneText(dataClass, result);
    return tellsMerged || result.merged == 0
               ? text
               : text + QLatin1Char('\n') + textFor("IDS_RECORDS_THERE_ALREADY", result.merged);
}

void removeRecords(DataClass dataClass, const QString &folder, const QStringList &ids, Progress &progress)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return removeAll<LocalContactsDb>(folder, ids, progress);
    case DataClass::Calls:
        return removeAll<LocalCallHistoryDb>(folder, ids, progress);
    case DataClass::Notes:
        return removeAll<LocalNotesDb>(folder, ids, progress);
    case DataClass::Calendar:
        return removeAll<LocalCalendarsDb>(folder, ids, progress);
    case DataClass::Bookmarks:
        return removeAll<LocalBookmarkDb>(folder, ids, progress);
    default:
        throw Error(QStringLiteral("%1 are not kept in local databases").arg(dataClassName(dataClass)));
    }
}
