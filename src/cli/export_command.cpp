#include "cli/commands.h"

#include "base/error.h"
#include "base/source_guard.h"
#include "base/texts.h"
#include "cli/arguments.h"
#include "cli/date_range.h"
#include "cli/local_database.h"
#include "cli/media_command.h"
#include "cli/message_source.h"
#include "cli/password.h"
#include "cli/personal_command.h"
#include "export/message_export.h"
#include "personal/data_class.h"

#include <CLI/CLI.hpp>
#include <QDir>

#include <algorithm>

namespace {
struct ExportRequest
{
    DataClass dataClass = DataClass::Messages;
    QString source;
    QString format;
    QString target;
    std::vector<qint64> chats; // all when empty
    DateRange dates;
    Scope scope = Scope::Usual;
};

/// The written formats of a class; none for those that are copied as they are.
QStringList formatsOf(DataClass dataClass)
{
    switch (dataClass) {
    case DataClass::Messages:
        return {QStringLiteral("text"), QStringLiteral("csv"), QStringLiteral("pdf"), QStringLiteral("html"),
                QStringLiteral("db")};
    case DataClass::Contacts:
        return {QStringLiteral("vcard"), QStringLiteral("csv"), QStringLiteral("text"),
                QStringLiteral("html")};
    case DataClass::Calls:
        return {QStringLiteral("text"), QStringLiteral("csv")};
    case DataClass::Calendar:
        return {QStringLiteral("ical"), QStringLiteral("csv")};
    case DataClass::Notes:
    case DataClass::Bookmarks:
        return {QStringLiteral("html")};
    case DataClass::Photos:
    case DataClass::Videos:
    case DataClass::Voicemail:
    case DataClass::Recordings:
    case DataClass::Files:
        return {};
    }
    return {};
}

void requireFormat(DataClass dataClass, const std::optional<QString> &format)
{
    const QStringList formats = formatsOf(dataClass);
    const QString name = dataClassName(dataClass);
    if (formats.isEmpty() && format)
        wrongUsage(
            QStringLiteral("--format does not go with %1: the files are copied as they are").arg(name));
    if (!formats.isEmpty() && !formats.contains(format.value_or(QString())))
        wrongUsage(
            QStringLiteral("--format: for %1 it is one of %2").arg(name, formats.join(QStringLiteral(", "))));
}

DateRange dateRangeOf(const CLI::Option *from, const CLI::Option *to)
{
    const auto parsed = [](const CLI::Option *option, RangeEnd end, std::int64_t open) {
        const std::optional<QString> text = valueOf(option);
        if (!text)
            return open;
        const std::optional<std::int64_t> date = parseDate(*text, end);
        if (!date)
            wrongUsage(QStringLiteral("%1: \"%2\" is no date such as 2012-01-31 or 2012-01-31T23:59:00")
                           .arg(QString::fromStdString(option->get_name()), *text));
        return *date;
    };
    const DateRange range{parsed(from, RangeEnd::First, INT64_MIN), parsed(to, RangeEnd::Last, INT64_MAX)};
    if (range.from > range.to)
        wrongUsage(QStringLiteral("--from lies after --to"));
    return range;
}

void prepareTarget(MessageFormat format, const QString &target)
{
    const QFileInfo info(target);
    const bool isFolder = format != MessageFormat::Text && format != MessageFormat::Csv;
    if (info.exists() && info.isDir() != isFolder)
        throw Error(QStringLiteral("%1: %2").arg(
            target, isFolder ? QStringLiteral("not a folder") : QStringLiteral("is a folder, not a file")));
    SourceGuard::requireOutside(target);
    const QString folder = isFolder ? target : info.absolutePath();
    if (!QDir().mkpath(folder))
        throw Error(QStringLiteral("can not create %1.").arg(folder));
}

ExitStatus exportMessagesOf(const ExportRequest &request, const PasswordOption &password,
                            CommandContext &context)
{
    const std::optional<MessageFormat> format = messageFormatOf(request.format);
    if (!format)
        throw Error(
            QStringLiteral("messages can not be written as %1 by this version yet").arg(request.format));
    OpenMessages messages = openMessages(request.source, request.scope, password, context.progress);
    loadMessagesOf(*messages.database, request.chats, request.source, context.progress);
    const QString target = QDir(request.target).absolutePath();
    prepareTarget(*format, target);
    const std::vector<MessageRef> selected =
        messages.database->select(request.chats, request.dates.from, request.dates.to);
    const ExportedMessages exported =
        exportMessages(selected, *format, target, messages.files.get(), context.progress);
    context.tell(QStringList{textFor("IDS_MESSAGES_WRITTEN", exported.report.done),
                             textFor("IDS_WRITTEN_FILES", exported.files.size()),
                             textFor("IDS_WRITTEN_ATTACHMENTS", exported.attachmentsCopied)}
                     .join(QStringLiteral(", ")));
    Report report = messages.report();
    report.merge(exported.report);
    return context.report(report);
}

struct ExportArguments
{
    const CLI::Option *className;
    const CLI::Option *source;
    const CLI::Option *format;
    const CLI::Option *target;
    const CLI::Option *chats;
    const CLI::Option *from;
    const CLI::Option *to;
    const CLI::Option *everything;
};

ExportRequest requestOf(const ExportArguments &arguments)
{
    const QString name = *valueOf(arguments.className);
    const std::optional<DataClass> dataClass = dataClassOf(name);
    if (!dataClass)
        wrongUsage(QStringLiteral("CLASS: there is no \"%1\" to export").arg(name));
    requireFormat(*dataClass, valueOf(arguments.format));
    ExportRequest request;
    request.dataClass = *dataClass;
    request.source = requireSource(arguments.source);
    request.format = valueOf(arguments.format).value_or(QString());
    request.target = *valueOf(arguments.target);
    if (request.target.isEmpty())
        wrongUsage(QStringLiteral("-o: TARGET is empty"));
    for (const qint64 rowid : numbersOf(arguments.chats, 1, INT64_MAX))
        request.chats.push_back(rowid);
    std::sort(request.chats.begin(), request.chats.end());
    request.chats.erase(std::unique(request.chats.begin(), request.chats.end()), request.chats.end());
    if (!request.chats.empty() && *dataClass != DataClass::Messages)
        wrongUsage(QStringLiteral("--chat goes with messages alone"));
    request.dates = dateRangeOf(arguments.from, arguments.to);
    request.scope = scopeOf(arguments.everything);
    return request;
}
} // namespace

void addExportCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("export", "Write records as files for people and other programs");
    const ExportArguments arguments{
        .className = addPositional(command, "CLASS", "messages, or another class of data"),
        .source = addPositional(command, "SOURCE", sourceDescription),
        .format = addValue(
            command, "--format",
            "messages: text, csv, pdf, html or db; contacts: vcard, csv, text or html; calls: text or csv; "
            "calendar: ical or csv; notes and bookmarks: html; the others are "
            "copied and have none"),
        .target = addValue(command, "-o,--output", "the file, or for pdf, html and db the folder, to write")
                      ->required(),
        .chats = addValues(command, "--chat", "only this conversation; may be given again"),
        .from = addValue(command, "--from", "only from this date on: yyyy-MM-dd or yyyy-MM-ddThh:mm:ss"),
        .to = addValue(command, "--to", "only up to this date, which counts"),
        .everything = addEverything(command),
    };
    const PasswordOption password(command);
    command.callback([&job, arguments, password] {
        job.needsPictures = true;
        job.run = [request = requestOf(arguments), password](CommandContext &context) {
            if (isPersonalClass(request.dataClass))
                return exportRecords({.dataClass = request.dataClass,
                                      .source = request.source,
                                      .format = request.format,
                                      .target = request.target,
                                      .dates = request.dates,
                                      .scope = request.scope},
                                     password, context);
            if (isMediaClass(request.dataClass))
                return exportMedia(request.dataClass, request.source, request.target, password, context);
            return exportMessagesOf(request, password, context);
        };
    });
}
