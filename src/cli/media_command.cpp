#include "cli/media_command.h"

#include "backup/backup_manifest.h"
#include "backup/extract.h"
#include "base/error.h"
#include "base/file_names.h"
#include "cli/extract_report.h"
#include "cli/json_writer.h"
#include "cli/open_backup.h"
#include "cli/password.h"
#include "personal/media_items.h"

#include <QDir>

namespace {
std::unique_ptr<BackupManifest> openMediaSource(DataClass dataClass, const QString &source,
                                                const PasswordOption &password, Progress &progress)
{
    if (source.startsWith(QLatin1String("local:")))
        throw Error(QStringLiteral("%1 are not kept in local databases").arg(dataClassName(dataClass)));
    return openBackup(source, password, PasswordNeed::Always, progress);
}

CameraRollKind cameraRollKind(DataClass dataClass)
{
    return dataClass == DataClass::Videos ? CameraRollKind::Video : CameraRollKind::Photo;
}

void instant(JsonWriter &json, const char *name, qint64 unixSeconds)
{
    json.key(name);
    json.instant(unixSeconds == 0 ? std::nullopt : std::optional<std::int64_t>(unixSeconds));
}

void filePath(JsonWriter &json, const FileCatalogue &catalogue, FileCatalogue::Index file)
{
    json.key("file");
    if (file == FileCatalogue::none)
        json.null();
    else
        json.utf8(catalogue.relativePath(file));
}

void appendCameraItem(QByteArray &line, const FileCatalogue &catalogue, FileCatalogue::Index index)
{
    JsonWriter json(line);
    json.beginObject();
    json.key("domain");
    json.utf8(catalogue.domain(index));
    json.key("path");
    json.utf8(catalogue.relativePath(index));
    json.field("size", static_cast<std::int64_t>(catalogue.sizeBytes(index)));
    instant(json, "modified", catalogue.lastModified(index));
    json.endObject();
    line.append('\n');
}

void appendVoicemail(QByteArray &line, const FileCatalogue &catalogue, const VoicemailItem &item)
{
    JsonWriter json(line);
    json.beginObject();
    json.field("rowid", item.rowid);
    instant(json, "date", item.date.toSecsSinceEpoch());
    json.key("sender");
    if (item.sender.isEmpty())
        json.null();
    else
        json.text(item.sender);
    json.field("duration", item.duration);
    filePath(json, catalogue, item.file);
    json.endObject();
    line.append('\n');
}

void appendRecording(QByteArray &line, const FileCatalogue &catalogue, const RecordingItem &item)
{
    JsonWriter json(line);
    json.beginObject();
    instant(json, "date", item.date.toSecsSinceEpoch());
    json.field("duration", item.duration);
    filePath(json, catalogue, item.file);
    json.endObject();
    line.append('\n');
}

QString dateText(const QDateTime &date)
{
    return date.toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

/// "20260131-123000-sender.amr": sorts by date and says who.
QString namedByDate(const QDateTime &date, const QString &sender, const QString &devicePath)
{
    QString name = date.toLocalTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString safe = sender;
    safe.replace(QLatin1Char('.'), QLatin1Char('_'));
    if (const QString who = safeFileName(safe); !who.isEmpty())
        name += QLatin1Char('-') + who.left(80);
    return name + QLatin1Char('.') + devicePath.section(QLatin1Char('.'), -1);
}

/// The files of voicemail or recordings under names with their date; what has no file is told.
QList<NamedExtract> namedFiles(DataClass dataClass, BackupManifest &backup, CommandContext &context)
{
    const FileCatalogue &catalogue = backup.catalogue();
    QList<NamedExtract> files;
    const auto add = [&](FileCatalogue::Index file, const QDateTime &date, const QString &sender,
                         const QString &what) {
        if (file == FileCatalogue::none) {
            context.tell(QStringLiteral("Can't find %1.").arg(what));
            return;
        }
        files.append({file, namedByDate(date, sender, QString::fromUtf8(catalogue.relativePath(file)))});
    };
    if (dataClass == DataClass::Voicemail) {
        for (const VoicemailItem &item : readVoicemail(backup))
            add(item.file, item.date, item.sender,
                QStringLiteral("'date:%1, sender:%2'").arg(dateText(item.date), item.sender));
    } else {
        for (const RecordingItem &item : readRecordings(backup))
            add(item.file, item.date, {}, QStringLiteral("'date:%1'").arg(dateText(item.date)));
    }
    return files;
}

ExtractSummary extractClass(DataClass dataClass, BackupManifest &backup, const QString &target,
                            CommandContext &context)
{
    const FileCatalogue &catalogue = backup.catalogue();
    switch (dataClass) {
    case DataClass::Voicemail:
    case DataClass::Recordings:
        return extractNamed(backup, namedFiles(dataClass, backup, context), target, context.progress);
    case DataClass::Files:
        return extractNodes(backup, backup.tree().children(FileTree::root), target, context.progress);
    default: {
        QList<ExtractRequest> requests;
        for (const FileCatalogue::Index index : cameraRollItems(backup, cameraRollKind(dataClass)))
            requests.append(
                {catalogue.domain(index).toByteArray(), catalogue.relativePath(index).toByteArray()});
        return extractFiles(backup, requests, target, context.progress);
    }
    }
}
} // namespace

bool isMediaClass(DataClass dataClass)
{
    switch (dataClass) {
    case DataClass::Photos:
    case DataClass::Videos:
    case DataClass::Voicemail:
    case DataClass::Recordings:
    case DataClass::Files:
        return true;
    default:
        return false;
    }
}

qint64 countMedia(BackupManifest &backup, DataClass dataClass)
{
    switch (dataClass) {
    case DataClass::Voicemail:
        return hasVoicemail(backup) ? countVoicemail(backup) : 0;
    case DataClass::Recordings:
        return hasRecordings(backup) ? countRecordings(backup) : 0;
    default:
        return cameraRollItems(backup, cameraRollKind(dataClass)).size();
    }
}

ExitStatus showMedia(DataClass dataClass, const QString &source, const PasswordOption &password,
                     CommandContext &context)
{
    const auto backup = openMediaSource(dataClass, source, password, context.progress);
    const FileCatalogue &catalogue = backup->catalogue();
    context.progress.clear();
    QByteArray line;
    const auto print = [&](const auto &items, auto append) {
        for (const auto &item : items) {
            context.progress.check();
            line.resize(0);
            append(line, catalogue, item);
            context.out.write(line);
        }
    };
    if (dataClass == DataClass::Voicemail)
        print(readVoicemail(*backup), appendVoicemail);
    else if (dataClass == DataClass::Recordings)
        print(readRecordings(*backup), appendRecording);
    else
        print(cameraRollItems(*backup, cameraRollKind(dataClass)), appendCameraItem);
    return ExitStatus::Done;
}

ExitStatus exportMedia(DataClass dataClass, const QString &source, const QString &target,
                       const PasswordOption &password, CommandContext &context)
{
    const auto backup = openMediaSource(dataClass, source, password, context.progress);
    return tellExtraction(extractClass(dataClass, *backup, QDir(target).absolutePath(), context), context);
}
