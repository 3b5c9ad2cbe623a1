#pragma once

#include "backup/loose_database.h"
#include "messages/ios6_message_db.h"

/// The files of the macOS Messages application: those that lie in the folder of its database, else those in
/// "Library/Messages" of the current user's home folder. Nothing outside of the two is given.
class MacMessageFiles : public LooseDatabaseSource
{
public:
    /// `folder` is the one of "chat.db", `home` the user's home folder.
    MacMessageFiles(const QString &folder, const QString &home);

    QString localPath(const SourceFile &file) const override;
    /// Of a path as macOS stores it, such as "~/Library/Messages/Attachments/ab/12/x.jpg".
    SourceFile fileOfDevicePath(const QString &path) const override;

private:
    QString m_homeFolder;
};

/// Reads "chat.db" of the macOS Messages application. Its tables are those of iOS 6 and later; the file names
/// of attachments are given as a device would have them, so that the messages can be handled like a device's.
class MacMessagingDb : public IOS6MessageDb
{
public:
    /// `file` is a private copy of the database; `files` must outlive this object. Throws Error.
    MacMessagingDb(const DatabaseFile &file, MacMessageFiles &files);

    int kind() const override { return 7; }

protected:
    void placeAttachment(_MsgAttachment &attachment) const override;

private:
    MacMessageFiles &m_files;
};
