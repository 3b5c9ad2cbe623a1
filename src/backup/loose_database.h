#pragma once

#include "backup/folder_source.h"
#include "backup/scratch_folder.h"
#include "base/source_guard.h"

#include <optional>

/// The folder of a database that was taken off a device by itself, such as "sms.db" with "Attachments/"
/// beside it: it stands for one folder of the device.
class LooseDatabaseSource : public FolderSource
{
public:
    /// `deviceFolder` is what the folder was on the device, such as "var/mobile/Library/SMS".
    LooseDatabaseSource(const QString &folder, const QString &deviceFolder);

    /// A private copy of a database anywhere on this computer, with what it has not written back yet; valid
    /// while this object lives. Throws Error.
    QString copyOf(const QString &database);
    SourceFile fileOfDevicePath(const QString &devicePath) const override;
    /// When the newest of the databases that were copied was last written.
    qint64 takenAt() const override { return m_takenAt; }

private:
    QString m_deviceFolder;
    ScratchFolder m_scratch;
    std::optional<SourceGuard> m_guard;
    qint64 m_takenAt = 0;
};
