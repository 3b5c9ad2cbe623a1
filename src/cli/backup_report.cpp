#include "cli/backup_report.h"

#include "base/report.h"

void writeBackupFields(JsonWriter &json, const BackupInfo &info)
{
    json.field("path", info.folder);
    json.field("display_name", info.displayName);
    json.field("device_id", info.deviceId);
    json.field("device_name", info.deviceName);
    json.field("product_type", info.productType);
    json.field("product_version", info.productVersion);
    json.field("serial_number", info.serialNumber);
    json.key("backup_date");
    json.instant(info.backupDate.isValid() ? std::optional(info.backupDate.toSecsSinceEpoch())
                                           : std::nullopt);
    json.key("encrypted");
    json.boolean(info.encrypted);
    json.field("layout",
               info.layout == BackupLayout::Modern ? QStringLiteral("modern") : QStringLiteral("mbdb"));
}

void writeProblems(JsonWriter &json, const Report &report)
{
    json.key("problems");
    json.beginArray();
    for (const QString &problem : problemsOf(report))
        json.text(problem);
    json.endArray();
}

QString dateForPeople(const QDateTime &date)
{
    return date.toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm"));
}

QString statusForPeople(const BackupInfo &info)
{
    return info.encrypted ? QStringLiteral("Encrypted") : QStringLiteral("Normal");
}
