#include "base/shell.h"

#include "base/process_guard.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QUrl>

#ifdef Q_OS_WIN
#include <windows.h>
#include <shellapi.h>
#endif

namespace {
#ifdef Q_OS_WIN
void shellExecute(const QString &file, const QString &parameters, int show)
{
    ShellExecuteW(nullptr, L"open", reinterpret_cast<const wchar_t *>(file.utf16()),
                  parameters.isEmpty() ? nullptr : reinterpret_cast<const wchar_t *>(parameters.utf16()),
                  nullptr, show);
}
#else
void openWithDesktop(const QString &target)
{
    const UsersFileMask theirs;
    QProcess::startDetached(QStringLiteral("xdg-open"), {target});
}
#endif
} // namespace

void openFolderInShell(const QString &path)
{
#ifdef Q_OS_WIN
    QProcess explorer;
    explorer.setProgram(QStringLiteral("explorer"));
    explorer.setNativeArguments(QStringLiteral("\"%1\"").arg(QDir::toNativeSeparators(path)));
    explorer.startDetached();
#else
    openWithDesktop(QUrl::fromLocalFile(path).toString());
#endif
}

void openInShell(const QString &pathOrUrl)
{
#ifdef Q_OS_WIN
    shellExecute(pathOrUrl, {}, SW_SHOWNORMAL);
#else
    openWithDesktop(pathOrUrl);
#endif
}

void quitByTaskKill()
{
    const QString process = QString::number(QCoreApplication::applicationPid());
#ifdef Q_OS_WIN
    shellExecute(QStringLiteral("taskkill"), QStringLiteral("/f /pid %1").arg(process), SW_HIDE);
#else
    QProcess::startDetached(QStringLiteral("kill"), {QStringLiteral("-KILL"), process});
#endif
}
