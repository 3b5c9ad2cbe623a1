#include "cli/commands.h"

#include "base/apple_time.h"
#include "cli/arguments.h"
#include "cli/backup_report.h"
#include "cli/line_text.h"
#include "cli/open_backup.h"
#include "cli/password.h"

#include <CLI/CLI.hpp>

namespace {
struct FilesRequest
{
    QString backup;
    std::optional<QByteArray> domain;
    std::optional<QByteArray> under;
    bool json = false;
};

bool isAsked(const FilesRequest &request, QByteArrayView domain, QByteArrayView path)
{
    if (request.domain && domain != *request.domain)
        return false;
    if (!request.under || request.under->isEmpty())
        return true;
    const qsizetype length = request.under->size();
    return path.startsWith(*request.under) && (path.size() == length || path.at(length) == '/');
}

std::optional<std::int64_t> modified(const FileRecord &record)
{
    return record.lastModified == 0 ? std::nullopt : std::optional<std::int64_t>(record.lastModified);
}

void writeJson(QByteArray &line, const FileCatalogue &catalogue, FileCatalogue::Index index)
{
    const FileRecord record = catalogue.record(index);
    JsonWriter json(line);
    json.beginObject();
    json.key("id");
    json.utf8(catalogue.fileId(index));
    json.key("domain");
    json.utf8(record.domain);
    json.key("path");
    json.utf8(record.relativePath);
    json.key("target");
    json.utf8(record.target);
    json.field("mode", record.mode);
    json.field("size", static_cast<std::int64_t>(record.sizeBytes));
    json.key("modified");
    json.instant(modified(record));
    json.field("protection_class", record.protectionClass);
    json.key("directory");
    json.boolean(catalogue.isDirectory(index));
    json.key("virtual_path");
    json.utf8(FileTree::virtualPath(record.domain, record.relativePath));
    json.endObject();
    line.append('\n');
}

QString modeText(std::uint16_t mode)
{
    QString text(QStringLiteral("-rwxrwxrwx"));
    const std::uint16_t type = mode & modeTypeMask;
    text[0] = QLatin1Char(type == modeDirectory ? 'd' : type == modeLink ? 'l' : '-');
    for (int bit = 0; bit < 9; ++bit) {
        if ((mode & (0400 >> bit)) == 0)
            text[1 + bit] = QLatin1Char('-');
    }
    return text;
}

void writePlain(QByteArray &line, const FileCatalogue &catalogue, FileCatalogue::Index index)
{
    const FileRecord record = catalogue.record(index);
    const std::optional<std::int64_t> seconds = modified(record);
    const QString date =
        seconds ? dateForPeople(QDateTime::fromSecsSinceEpoch(*seconds, Qt::UTC)) : QString();
    QString text = QStringLiteral("%1 %2  %3  %4  %5")
                       .arg(modeText(record.mode))
                       .arg(record.sizeBytes, 12)
                       .arg(date, -16)
                       .arg(oneLine(QString::fromUtf8(record.domain)), -24)
                       .arg(oneLine(QString::fromUtf8(record.relativePath)));
    if (!record.target.isEmpty())
        text += QStringLiteral(" -> ") + oneLine(QString::fromUtf8(record.target));
    line.append(text.toUtf8()).append('\n');
}

ExitStatus files(const FilesRequest &request, const PasswordOption &password, CommandContext &context)
{
    const auto backup = openBackup(request.backup, password, context.progress);
    const FileCatalogue &catalogue = backup->catalogue();
    context.progress.clear();
    QByteArray line;
    for (FileCatalogue::Index index = 0; index < catalogue.size(); ++index) {
        context.progress.check();
        if (!isAsked(request, catalogue.domain(index), catalogue.relativePath(index)))
            continue;
        line.resize(0);
        if (request.json)
            writeJson(line, catalogue, index);
        else
            writePlain(line, catalogue, index);
        context.out.write(line);
    }
    return context.report(backup->report());
}
} // namespace

ExitStatus showFiles(const QString &backup, const PasswordOption &password, CommandContext &context)
{
    return files({.backup = backup, .domain = {}, .under = {}, .json = true}, password, context);
}

void addFilesCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("files", "List the catalogue of a backup");
    const CLI::Option *backup = addPositional(command, "BACKUP", "the backup's folder");
    const CLI::Option *domain = addValue(command, "--domain", "only the files of this domain");
    const CLI::Option *under = addValue(command, "--under", "only this path and everything below it");
    const CLI::Option *json = addSwitch(command, "--json", "print one JSON object a line");
    const PasswordOption password(command);
    command.callback([&job, backup, domain, under, json, password] {
        FilesRequest request{.backup = *valueOf(backup), .domain = {}, .under = {}, .json = isGiven(json)};
        if (const auto value = valueOf(domain))
            request.domain = value->toUtf8();
        if (const auto value = valueOf(under))
            request.under = pathOf(*value);
        job.run = [request, password](CommandContext &context) { return files(request, password, context); };
    });
}
