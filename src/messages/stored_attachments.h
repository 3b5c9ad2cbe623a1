#pragma once

#include "backup/folder_source.h"
#include "messages/msg_records.h"

/// The attachment files that a message store keeps beside its database, each in
/// "Attachments/ab/12/GUID/name": the folders are named by the first characters of the GUID, as a device
/// does.
class StoredAttachments : public FolderSource
{
public:
    /// `folder` is the one of the store's database.
    explicit StoredAttachments(const QString &folder) : FolderSource(folder) {}

    /// Where the file of an attachment belongs; it need not be there. The same for every GUID and file name,
    /// and always below the folder.
    static SourceFile placeOf(const _MsgAttachment &attachment);
};
