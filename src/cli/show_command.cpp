#include "cli/commands.h"

#include "cli/arguments.h"
#include "cli/local_database.h"
#include "cli/media_command.h"
#include "cli/message_json.h"
#include "cli/message_source.h"
#include "cli/password.h"
#include "cli/personal_command.h"
#include "messages/attachment_content.h"
#include "personal/data_class.h"

#include <CLI/CLI.hpp>

namespace {
struct ShowRequest
{
    QString source;
    std::vector<qint64> chats; // all when empty
    Scope scope = Scope::Usual;
};

ExitStatus showChats(const ShowRequest &request, const PasswordOption &password, CommandContext &context)
{
    const OpenMessages messages = openMessages(request.source, request.scope, password, context.progress);
    const std::unordered_map<qint64, qint64> counts = messages.database->countMessagesByChat();
    context.progress.clear();
    QByteArray line;
    for (const _MsgChat *chat : messages.database->chats()) {
        context.progress.check();
        const auto count = counts.find(chat->rowid);
        line.resize(0);
        appendChatLine(line, *chat, count == counts.end() ? 0 : count->second);
        context.out.write(line);
    }
    return context.report(messages.report());
}

ExitStatus showMessages(const ShowRequest &request, const PasswordOption &password, CommandContext &context)
{
    OpenMessages messages = openMessages(request.source, request.scope, password, context.progress);
    loadMessagesOf(*messages.database, request.chats, request.source, context.progress);
    context.progress.clear();
    QByteArray line;
    const std::vector<MessageRef> selected = messages.database->select(request.chats, INT64_MIN, INT64_MAX);
    for (const MessageRef &ref : selected) {
        context.progress.check();
        line.resize(0);
        appendMessageLine(line, ref, *messages.files);
        context.out.write(line);
    }
    Report report = messages.report();
    noteLostContent(report, selected, messages.files.get());
    return context.report(report);
}
} // namespace

void addShowCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("show", "Print records, one JSON object a line");
    const CLI::Option *className =
        addPositional(command, "CLASS", "messages, chats, or another class of data");
    const CLI::Option *source = addPositional(command, "SOURCE", sourceDescription);
    const CLI::Option *chat = addValue(command, "--chat", "only the messages of this conversation");
    const CLI::Option *everything = addEverything(command);
    const PasswordOption password(command);
    command.callback([&job, className, source, chat, everything, password] {
        const QString name = *valueOf(className);
        ShowRequest request{.source = requireSource(source), .chats = {}, .scope = scopeOf(everything)};
        if (const auto rowid = numberOf(chat, 1, INT64_MAX))
            request.chats.push_back(*rowid);
        const bool chats = name == QLatin1String("chats");
        if (!chats && !dataClassOf(name))
            wrongUsage(QStringLiteral("CLASS: there is no \"%1\"").arg(name));
        if (!request.chats.empty() && dataClassOf(name) != DataClass::Messages)
            wrongUsage(QStringLiteral("--chat goes with messages alone"));
        const std::optional<DataClass> dataClass = dataClassOf(name);
        job.run = [=](CommandContext &context) {
            if (chats)
                return showChats(request, password, context);
            if (isPersonalClass(*dataClass))
                return showRecords(*dataClass, request.source, request.scope, password, context);
            if (dataClass == DataClass::Files)
                return showFiles(request.source, password, context);
            if (isMediaClass(*dataClass))
                return showMedia(*dataClass, request.source, password, context);
            return showMessages(request, password, context);
        };
    });
}
