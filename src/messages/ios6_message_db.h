#pragma once

#include "messages/abs_ios_message_db.h"
#include "messages/record_date.h"

#include <QSet>

/// Reads the message database of iOS 6 and later, and the local message store, whose schema is a copy of it.
/// Adapts to the columns that the file has. Loading the same conversation twice changes nothing.
class IOS6MessageDb : public AbsIOSMessageDb
{
public:
    /// Opens the database; throws Error. `source` may be null: attachments have no file then and nobody a
    /// name out of the address book. It must outlive this object.
    IOS6MessageDb(const DatabaseFile &file, FileSource *source, ContactNames names);

    int kind() const override { return 6; }
    qint64 countMessages() override;
    void checkContent() override;
    std::unordered_map<qint64, qint64> countMessagesByChat() override;
    void loadChats() override;
    void loadMessages(qint64 chatId, Progress &progress) override;

private:
    DateUnit dateUnit() const;
    QString listedMessages() const;
    qint64 number(const QString &sql) const;
    QString usualItems() const;
    bool listsThoseOfNoChat() const;
    qint64 countListed();
    QString countOfMissingChats() const;
    void readConversations();
    void readConversation(qint64 chatId, Progress &progress);
    void readChats();
    void computeLastDates();
    void readHandles();
    void readSenders(const IOSContactsMemDb *contacts);
    void clear() override;
    void noteDamage() final;
    enum class Join { Chat, None };
    void readMessages(const QString &sql, Join join, Progress &progress);
    void tellHidden(qsizetype itemsBefore, qint64 chatId);
    void completeMessage(_MsgMessage &message);
    void readAttachments(qint64 chatId, Progress &progress);
    void noteLostAttachment(qint64 message, qint64 attachment);

    QSet<qint64> m_hiddenItems;
    QSet<std::pair<qint64, qint64>> m_lostAttachments; // message and attachment
};
