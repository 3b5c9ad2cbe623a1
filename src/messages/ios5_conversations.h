#pragma once

#include "messages/abs_ios_message_db.h"

#include <QSet>

/// The conversations and addresses of a message database of iOS 5 or earlier, shown as those of a newer one.
/// Text messages stand in groups with members there, while iMessage has a table of its own: the row ids of
/// its conversations are given with firstIMessageRowid - 1 added, so that the two kinds do not meet.
/// Addresses have no rows; handles are numbered as they are met.
class IOS5Conversations : public AbsIOSMessageDb
{
public:
    static constexpr qint64 firstIMessageRowid = 1'000'000'001;

    ~IOS5Conversations() override;

    void loadChats() override;

protected:
    enum class Service { Sms, IMessage };

    using AbsIOSMessageDb::AbsIOSMessageDb;

    void clear() override;
    void noteDamage() final;

    /// A row id of a table of iMessage as it is given out; 0 when it is none that a device writes.
    static qint64 shifted(qint64 iMessageRowid);
    /// Notes the text messages of groups that have members and are not there themselves.
    void readMissingGroups();
    /// Null when there is none.
    _MsgChat *groupChat(qint64 groupId) const;
    _MsgChat *iMessageChat(const QString &room, const QString &address);
    /// The handle of an address, made when it is new; null for an empty address.
    const _MsgHandle *handleOf(Service service, const QString &address, const QString &country);

private:
    void readConversations();
    QString textsOfGroups() const;
    void readGroups();
    void readMembers();
    void nameTextChats();
    void readIMessageChats();
    void readParticipants(_MsgChat &chat, const QByteArray &participants);
    void readLastDates();
    void readLastDatesBy(const QString &column, const QString &condition);
    bool addChat(_MsgChat &&chat);
    void addMember(_MsgChat &chat, const _MsgHandle *handle);
    QString idOf(const QString &address, const QString &country);

    std::unique_ptr<IOSContactsMemDb> m_contacts;
    QHash<QString, QString> m_ids;                     // normalised, by country and address
    QHash<QString, const _MsgHandle *> m_handlesOf[2]; // of each service, by id
    QHash<QString, _MsgChat *> m_iMessageChats;        // by identifier
    QSet<std::pair<qint64, qint64>> m_members;         // chat and handle
};
