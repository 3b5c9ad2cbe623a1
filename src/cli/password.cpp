#include "cli/password.h"

#include "base/error.h"
#include "base/secret.h"
#include "cli/arguments.h"
#include "cli/line_text.h"
#include "cli/terminal.h"

#include <QFile>

namespace {
constexpr char variable[] = "QUILLBARROW_PASSWORD";
// No password is longer; a device file that never ends is not read to the end.
constexpr qint64 longestPassword = 64 * 1024;

QString readPasswordFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open the password file %1. %2").arg(path, file.errorString()));
    QByteArray bytes = file.read(longestPassword);
    const WipedAtEnd wiped(bytes);
    if (file.error() != QFileDevice::NoError)
        throw Error(QStringLiteral("can not read the password file %1. %2").arg(path, file.errorString()));
    if (bytes.endsWith('\n'))
        bytes.chop(bytes.endsWith("\r\n") ? 2 : 1);
    return QString::fromUtf8(bytes);
}
} // namespace

PasswordOption::PasswordOption(CLI::App &command)
    : m_file(addValue(command, "--password-file", "read the backup's password from this file"))
{
}

std::optional<QString> PasswordOption::given() const
{
    if (const std::optional<QString> path = valueOf(m_file))
        return readPasswordFile(*path);
    const QString password = qEnvironmentVariable(variable);
    return password.isEmpty() ? std::nullopt : std::optional(password);
}

std::optional<QString> PasswordOption::givenOrAsked(const QString &backup) const
{
    if (std::optional<QString> password = given())
        return password;
    return askHidden(QStringLiteral("Password of %1:").arg(oneLine(backup)));
}
