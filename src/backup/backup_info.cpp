#include "backup/backup_info.h"

#include "backup/cf_type.h"
#include "backup/sqlite_header.h"
#include "base/app_folders.h"
#include "base/error.h"
#include "base/own_file.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
// The largest seen has a few megabytes: it lists the applications of the device, with their pictures. What is
// larger is no property list of a backup, and would be read whole, and unfolded, in memory.
constexpr qint64 largestPropertyList = 64 << 20;

bool holdsFile(const QDir &folder, const char *name)
{
    return isOwnFile(folder.absolutePath(), QLatin1String(name));
}

/// One that is damaged says nothing, which is reported. Throws Error when it is not there or may not be read.
CFType readPropertyList(const QDir &folder, const QString &name, Report &report)
{
    const QFileInfo info(folder.absoluteFilePath(name));
    if (!info.exists() && !info.isSymLink())
        throw Error(QStringLiteral("Cannot find %1").arg(info.filePath()), ErrorKind::NotFound,
                    FileAccess::Reading);
    QFile file;
    openOwnFile(file, folder.absolutePath(), name);
    CFType list = file.size() > largestPropertyList ? CFType() : CFType::parse(file.readAll());
    if (list.isDictionary())
        return list;
    report.add({.what = "IDS_ISSUE_DESCRIPTION_DAMAGED", .where = name});
    return CFType();
}

/// Nothing of it is needed, but whoever relies on the backup should know that it is damaged.
void lookAt(const QDir &folder, const QString &name, Report &report)
{
    if (!QFileInfo::exists(folder.filePath(name)))
        return;
    try {
        readPropertyList(folder, name, report);
    } catch (const Error &) {
        report.add({.what = "IDS_ISSUE_DESCRIPTION_DAMAGED", .where = name});
    }
}

/// The folder's name with the device's name in place of its id. Without an id there is nothing to replace.
QString displayNameOf(const BackupInfo &info)
{
    QString name = QDir(info.folder).dirName();
    if (!info.deviceId.isEmpty() && name.contains(info.deviceId, Qt::CaseInsensitive))
        return name.replace(info.deviceId, info.deviceName, Qt::CaseInsensitive);
    return info.deviceName + QLatin1Char('-') + name;
}

/// Some tools clear "IsEncrypted" and leave the catalogue as it was. Only a catalogue that is no database,
/// beside the keys to open one, tells so.
bool hasEncryptedCatalogue(const BackupInfo &info)
{
    if (info.layout != BackupLayout::Modern || info.keybag.isEmpty() || info.manifestKey.isEmpty())
        return false;
    const QFileInfo catalogue(QDir(info.folder).filePath(QStringLiteral("Manifest.db")));
    return catalogue.size() > 0 && !hasSqliteHeader(catalogue.filePath());
}
} // namespace

bool isBackupFolder(const QString &folder)
{
    const QDir dir(folder);
    return (holdsFile(dir, "Manifest.mbdb") || holdsFile(dir, "Manifest.db")) &&
           holdsFile(dir, "Manifest.plist");
}

bool isModernLayout(const QString &folder)
{
    const QDir dir(folder);
    return !holdsFile(dir, "Manifest.mbdb") && holdsFile(dir, "Manifest.db");
}

BackupInfo readBackupInfo(const QString &folder)
{
    const QDir dir(folder);
    BackupInfo info;
    info.folder = dir.absolutePath();
    info.layout = isModernLayout(folder) ? BackupLayout::Modern : BackupLayout::Mbdb;
    const CFType manifest = readPropertyList(dir, QStringLiteral("Manifest.plist"), info.report);
    info.isManifestDamaged = !manifest.isDictionary();
    // Without it an encrypted catalogue stays what it is.
    const QString catalogue = dir.absoluteFilePath(QStringLiteral("Manifest.db"));
    if (info.isManifestDamaged && info.layout == BackupLayout::Modern && !hasSqliteHeader(catalogue))
        throw Error(QStringLiteral("can not read %1. It is no property list, and %2 is encrypted or no database.")
                        .arg(dir.absoluteFilePath(QStringLiteral("Manifest.plist")), catalogue),
                    ErrorKind::Damaged, FileAccess::Reading);
    lookAt(dir, QStringLiteral("Status.plist"), info.report);
    lookAt(dir, QStringLiteral("Info.plist"), info.report);
    const CFType lockdown = manifest.get(QStringLiteral("Lockdown"));
    info.deviceId = lockdown.get(QStringLiteral("UniqueDeviceID")).toString();
    info.deviceName = lockdown.get(QStringLiteral("DeviceName")).toString();
    info.productType = lockdown.get(QStringLiteral("ProductType")).toString();
    info.productVersion = lockdown.get(QStringLiteral("ProductVersion")).toString();
    info.serialNumber = lockdown.get(QStringLiteral("SerialNumber")).toString();
    info.backupDate = manifest.get(QStringLiteral("Date")).toDateTime();
    info.keybag = manifest.get(QStringLiteral("BackupKeyBag")).toByteArray();
    info.manifestKey = manifest.get(QStringLiteral("ManifestKey")).toByteArray();
    info.encrypted = manifest.get(QStringLiteral("IsEncrypted")).toBool() || hasEncryptedCatalogue(info);
    info.displayName = displayNameOf(info);
    const QFileInfo status(dir.filePath(QStringLiteral("Status.plist")));
    if (status.isFile())
        info.backupDate = status.lastModified().toUTC();
    return info;
}

QStringList backupRoots()
{
    return {homeFolder().filePath(QStringLiteral("Apple/MobileSync/Backup")),
            roamingFolder().filePath(QStringLiteral("Apple Computer/MobileSync/Backup"))};
}

QList<BackupInfo> listBackups(const QStringList &roots, Report &report)
{
    QList<BackupInfo> backups;
    for (const QString &root : roots) {
        const QFileInfoList folders =
            QDir(root).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Time | QDir::Reversed);
        for (const QFileInfo &folder : folders) {
            if (!isBackupFolder(folder.absoluteFilePath()))
                continue;
            try {
                backups.append(readBackupInfo(folder.absoluteFilePath()));
            } catch (const Error &error) {
                qWarning("%s", error.what());
                report.add("IDS_ISSUE_BACKUP_UNREADABLE", error.at(folder.absoluteFilePath()));
            }
        }
    }
    return backups;
}

QString backupUid(const QString &folder)
{
    const QByteArray path = QDir(folder).absolutePath().toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(path, QCryptographicHash::Md5).toHex());
}
