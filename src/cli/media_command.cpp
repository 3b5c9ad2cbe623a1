#include "cli/media_command.h"

#include "backup/backup_manifest.h"
#include "backup/extract.h"
#include "base/error.h"
#include "base/report.h"
#include "cli/extract_report.h"
#include "cli/json_writer.h"
#include "cli/open_backup.h"
#include "cli/password.h"
#include "personal/media_items.h"
#include "personal/media_names.h"
#include "personal/stored_date.h"

#include <QDir>

#include <algorithm>

namespace {
std::unique_ptr<BackupManifest> openMediaSource(DataClass dataClass, const QString &source,
                                                const PasswordOption &password, Progress &progress)
{
    if (source.startsWith(QLatin1String("local:")))
        throw Error(QStringLiteral("local databases keep no %1").arg(dataClassName(dataClass)));
    return openBackup(source, password, progress);
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
    instant(json, "date", unixSeconds(item.date));
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
    instant(json, "date", unixSeconds(item.date));
    json.field("duration", item.duration);
    filePath(json, catalogue, item.file);
    json.endObject();
    line.append('\n');
}

/// The files of voicemail or recordings under names with their date; what has no file is told.
template <typename Items>
QList<NamedExtract> namedFiles(const Items &items, const FileCatalogue &catalogue, CommandContext &context)
{
    QList<NamedExtract> files;
    for (const auto &item : items) {
        if (item.file == FileCatalogue::none)
            context.tell(QStringLiteral("Can't find %1.").arg(describe(item)));
        else
            files.append({item.file, exportName(item, catalogue)});
    }
    return files;
}

QList<NamedExtract> cameraFiles(const BackupManifest &backup, CameraRollKind kind)
{
    QList<NamedExtract> files;
    for (const FileCatalogue::Index index : cameraRollItems(backup, kind))
        files.append({index, cameraItemName(backup.catalogue(), index)});
    return files;
}

Report extractClass(DataClass dataClass, BackupManifest &backup, const QString &target, Report &report,
                    CommandContext &context)
{
    const FileCatalogue &catalogue = backup.catalogue();
    switch (dataClass) {
    case DataClass::Voicemail:
        return extractNamed(backup, namedFiles(readVoicemail(backup, report), catalogue, context), target,
                            context.progress);
    case DataClass::Recordings:
        return extractNamed(backup, namedFiles(readRecordings(backup, report), catalogue, context), target,
                            context.progress);
    case DataClass::Files:
        return extractNodes(backup, backup.tree().children(FileTree::root), target, context.progress);
    default:
        return extractNamed(backup, cameraFiles(backup, cameraRollKind(dataClass)), target, context.progress);
    }
}
} // namespace

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
    Report report;
    const auto read = [&] {
        if (dataClass == DataClass::Voicemail)
            return print(readVoicemail(*backup, report), appendVoicemail);
        if (dataClass == DataClass::Recordings)
            return print(readRecordings(*backup, report), appendRecording);
        const QList<FileCatalogue::Index> items = cameraRollItems(*backup, cameraRollKind(dataClass));
        print(items, appendCameraItem);
        reportMissingContent(*backup, items, report);
    };
    readOrReportAbsent(report, read);
    report.merge(reportOf(backup.get()));
    return context.report(report);
}

ExitStatus exportMedia(DataClass dataClass, const QString &source, const QString &target,
                       const PasswordOption &password, CommandContext &context)
{
    const auto backup = openMediaSource(dataClass, source, password, context.progress);
    Report report;
    const Report extracted = extractClass(dataClass, *backup, QDir(target).absolutePath(), report, context);
    report.merge(reportOf(backup.get()));
    const ExitStatus read = context.report(report);
    return std::max(read, tellExtraction(extracted, context));
}
