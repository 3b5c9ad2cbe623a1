#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace sample {

/// Rows of a message database before they are fitted to a generation. Instants are Apple absolute seconds; a
/// null byte array or string is NULL in the database.

struct HandleRow
{
    QString id;
    QString country;
    QString service;
};

struct ChatRow
{
    QString identifier;
    QString service;
    bool group = false;
    QString displayName;
    std::vector<qint64> handles;
};

struct MessageRow
{
    QByteArray guid;
    QByteArray text;
    QByteArray attributedBody;
    QString subject;
    qint64 handleId = 0;
    const char *service = "iMessage";
    qint64 date = 0;
    qint64 dateRead = 0;
    qint64 dateDelivered = 0;
    bool fromMe = false;
    bool audio = false;
    bool hasAttachments = false;
    int itemType = 0;
    qint64 otherHandle = 0;
    QString groupTitle;
    int groupActionType = 0;
    int shareStatus = 0;
    QString roomName;
    QByteArray associatedGuid;
    int associatedType = 0;
    QByteArray threadOriginator;
    QByteArray summaryInfo;
    qint64 dateEdited = 0;
    qint64 dateRetracted = 0;
};

struct AttachmentRow
{
    QByteArray guid;
    QString filename;
    QString transferName;
    QString mimeType;
    QString uti;
    qint64 totalBytes = 0;
    qint64 created = 0;
    bool outgoing = false;
};

} // namespace sample
