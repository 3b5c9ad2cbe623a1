#pragma once

#include "sample/generation.h"
#include "sample/sqlite_file.h"

#include <QStringList>

namespace sample {

/// Rows of the message database of iOS 5. Instants are Apple absolute seconds here, whatever the table counts
/// in.

struct OldTextRow
{
    qint64 group = 0;
    QString address; // null in what was sent to a group
    QString country;
    QByteArray text; // null when it stands in the parts
    QString subject;
    qint64 date = 0;
    bool fromMe = false;
};

struct OldIMessageRow
{
    QByteArray guid;
    QString room;
    QString handle;
    QByteArray text;
    QByteArray attributedBody;
    QByteArray attachmentInfo;
    qint64 date = 0;
    qint64 dateRead = 0;
    qint64 dateDelivered = 0; // tells what was sent from what was received
};

struct OldPartRow
{
    qint64 message = 0;
    int part = 0;
    const char *contentType = "";
    QString location;
    QByteArray data; // null when the bytes are in a file
};

struct OldAttachmentRow
{
    QByteArray guid;
    QString filename;
    const char *mimeType = "";
    const char *uti = "";
    qint64 created = 0;
    bool outgoing = false;
};

/// How a list of texts is kept: both kinds are met.
enum class ListForm { Array, Archive };
QByteArray textList(const QStringList &texts, ListForm form);

/// Writes an sms.db with the tables of iOS 5.
class OldMessageDatabase
{
public:
    OldMessageDatabase(const QString &path, const Generation &generation);

    qint64 addGroup(const QStringList &addresses, const QString &country);
    qint64 addChat(const QString &identifier, bool group, const QByteArray &participants);
    qint64 addText(const OldTextRow &row);
    qint64 addIMessage(const OldIMessageRow &row);
    void addPart(const OldPartRow &row);
    void addAttachment(const OldAttachmentRow &row);
    void execute(const QByteArray &sql) { m_file.execute(sql); }

    /// Ends the groups and the file. Nothing can be added afterwards.
    void finish();

private:
    struct Statements;

    SqliteFile m_file;
    std::shared_ptr<Statements> m_statements;
};

} // namespace sample
