#include "messages/abs_ios_message_db.h"

#include "messages/device_path.h"
#include "messages/stored_attachments.h"
#include "messages/typed_stream.h"
#include "personal/country_lib_db.h"
#include "personal/home_country.h"
#include "personal/ios_contacts_mem_db.h"
#include "sqlite/mend.h"

#include <algorithm>

namespace {
constexpr int rowsBetweenChecks = 256;

template <typename Record>
void sortUnique(std::vector<Record *> &records)
{
    const auto before = [](const Record *a, const Record *b) { return a->rowid < b->rowid; };
    if (!std::is_sorted(records.begin(), records.end(), before))
        std::sort(records.begin(), records.end(), before);
    records.erase(std::unique(records.begin(), records.end()), records.end());
}

// Handles stand in the order of their row ids as decimal texts: 1, 10, 2.
void sortByDecimalText(std::vector<const _MsgHandle *> &handles)
{
    std::sort(handles.begin(), handles.end(), [](const _MsgHandle *a, const _MsgHandle *b) {
        return std::to_string(a->rowid) < std::to_string(b->rowid);
    });
    handles.erase(std::unique(handles.begin(), handles.end()), handles.end());
}
} // namespace

void AbsIOSMessageDb::RowWatch::row()
{
    if (++m_rows % rowsBetweenChecks == 0)
        m_progress.check();
}

AbsIOSMessageDb::AbsIOSMessageDb(const DatabaseFile &file, FileSource *source, ContactNames names)
    : m_source(source),
      m_names(names),
      m_normalise([](const QString &number, const QString &) { return CountryLibDb::normalise(number, {}); })
{
    m_db.openForeign(file);
    m_db.checkPages();
    Sqlite3Cursor cursor = m_db.queryThrow(QStringLiteral("select * from sqlite_master where type='table'"));
    const int name = cursor.columnIndex(QStringLiteral("name"));
    const int sql = cursor.columnIndex(QStringLiteral("sql"));
    while (cursor.moveNext())
        m_createTexts.insert(cursor.getText(name).toLower(), cursor.getText(sql));
}

AbsIOSMessageDb::~AbsIOSMessageDb() = default;

void AbsIOSMessageDb::setNumbers(NumberNormaliser normalise, const QString &defaultCountry)
{
    m_normalise = std::move(normalise);
    m_defaultCountry = defaultCountry.toLower();
}

bool AbsIOSMessageDb::hasTable(const QString &table) const
{
    return m_createTexts.contains(table);
}

bool AbsIOSMessageDb::hasColumn(const QString &table, const QString &column) const
{
    return m_createTexts.value(table).contains(column, Qt::CaseInsensitive);
}

void AbsIOSMessageDb::clear()
{
    m_chatById.clear();
    m_chatList.clear();
    m_noChat.messages.clear();
    m_handleById.clear();
    m_messageById.clear();
    m_attachmentById.clear();
    m_chats.clear();
    m_handles.clear();
    m_messages.clear();
    m_attachments.clear();
    m_report = m_lost;
    noteDamage();
}

void AbsIOSMessageDb::noteDamage()
{
    if (!m_db.damage().isEmpty())
        addIssue("IDS_ISSUE_MESSAGE_DATABASE", m_db.damage());
}

// Listings join tables, so that one damaged page would cost what other tables say of the same messages.
void AbsIOSMessageDb::mendDatabase()
{
    static const QStringList tables{QStringLiteral("message"),
                                    QStringLiteral("chat"),
                                    QStringLiteral("handle"),
                                    QStringLiteral("attachment"),
                                    QStringLiteral("chat_message_join"),
                                    QStringLiteral("chat_handle_join"),
                                    QStringLiteral("message_attachment_join"),
                                    QStringLiteral("msg_group"),
                                    QStringLiteral("group_member"),
                                    QStringLiteral("msg_pieces"),
                                    QStringLiteral("madrid_chat"),
                                    QStringLiteral("madrid_attachment")};
    m_isMended = true;
    m_incomplete = mend(m_db, tables, m_lost);
    m_report.merge(m_lost);
}

void AbsIOSMessageDb::addIssue(const char *what, const QString &reason)
{
    m_report.add({.what = what, .where = m_db.name(), .reason = reason});
}

void AbsIOSMessageDb::noteMissingChats(qint64 messages)
{
    constexpr const char *what = "IDS_ISSUE_MESSAGES_OF_MISSING_CHATS";
    if (messages > 0 && m_report.count(what) == 0)
        m_report.add({.what = what, .where = m_db.name(), .count = messages});
}

void AbsIOSMessageDb::requireColumns(
    const std::vector<std::pair<const char *, std::vector<const char *>>> &tables)
{
    for (const auto &[name, columns] : tables) {
        const QString table = QLatin1String(name);
        if (!hasTable(table)) {
            addIssue("IDS_ISSUE_MISSING_TABLE", table);
            continue;
        }
        const QSet<QString> present = m_db.tbCols(table);
        for (const char *column : columns)
            if (!present.contains(QLatin1String(column)))
                addIssue("IDS_ISSUE_MISSING_COLUMN", table + u'.' + QLatin1String(column));
    }
}

void AbsIOSMessageDb::sortChats()
{
    sortUnique(m_chatList);
    for (_MsgChat &chat : m_chats)
        sortByDecimalText(chat.handles);
}

void AbsIOSMessageDb::sortMessages(qint64 chatId)
{
    for (_MsgChat &chat : m_chats)
        if (chatId <= 0 || chat.rowid == chatId)
            sortUnique(chat.messages);
    m_noChat.messages.clear();
    for (_MsgMessage &message : m_messages)
        if (!message.chat)
            m_noChat.messages.push_back(&message);
    sortUnique(m_noChat.messages);
    for (_MsgMessage &message : m_messages)
        if (message.attachments.size() > 1)
            sortUnique(message.attachments);
}

std::unique_ptr<IOSContactsMemDb> AbsIOSMessageDb::openContacts()
{
    if (!m_source || m_names != ContactNames::FromAddressBook)
        return nullptr;
    return std::make_unique<IOSContactsMemDb>(*m_source, m_normalise, m_report);
}

QString AbsIOSMessageDb::normalised(const QString &address, const QString &country) const
{
    return m_normalise(address, country);
}

void AbsIOSMessageDb::nameHandle(_MsgHandle &handle, const IOSContactsMemDb *contacts) const
{
    // An id without a digit is none that could be normalised, and is still the only name of its owner.
    if (const QString id = m_normalise(handle.id, handle.country); !id.isEmpty())
        handle.id = id;
    if (handle.country.isEmpty())
        handle.country = m_defaultCountry;
    const std::optional<ContactName> contact = contacts ? contacts->find(handle.id) : std::nullopt;
    if (!contact)
        return;
    handle._ct_name = contact->name;
    handle._photo = contact->photo;
}

void AbsIOSMessageDb::takeTextOfBody(_MsgMessage &message)
{
    if (!message.text.isEmpty() || message.attributedBody.isEmpty())
        return;
    const std::optional<QString> text = typedStreamText(message.attributedBody);
    message.text = text.value_or(QString());
    if (!text)
        addIssue("IDS_ISSUE_MESSAGE_BODIES");
}

void AbsIOSMessageDb::placeAttachment(_MsgAttachment &attachment) const
{
    if (!m_source || attachment.filename.isEmpty())
        return;
    attachment.source = m_names == ContactNames::AsStored
                            ? StoredAttachments::placeOf(attachment)
                            : m_source->fileOfDevicePath(devicePathOf(attachment.filename));
}

void useCountries(AbsIOSMessageDb &db)
{
    const SourceNumbers numbers = numbersOf(db.m_source, &db.m_db);
    db.setNumbers(numbers.normalise, numbers.defaultCountry);
}
