#include "views/open_attachment.h"

#include "backup/file_cipher.h"
#include "base/error.h"
#include "base/shell.h"
#include "base/texts.h"
#include "work/message_boxes.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace {
bool isOpenedByTheDesktop(const QString &suffix)
{
    static const QStringList suffixes = {QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("png"),
                                         QStringLiteral("bmp"), QStringLiteral("gif"),  QStringLiteral("mp3"),
                                         QStringLiteral("mp4"), QStringLiteral("mov")};
    return suffixes.contains(suffix, Qt::CaseInsensitive);
}

void saveAttachment(const QString &path, QWidget *parent)
{
    const QString proposed = QDir::home().filePath(QFileInfo(path).fileName());
    const QString target = QFileDialog::getSaveFileName(parent, textFor("IDS_SAVE_ATTACHMENT"), proposed);
    if (target.isEmpty())
        return;
    try {
        copyFile(path, target);
    } catch (const Error &error) {
        qWarning("%s", error.what());
        showErrorBox(textFor("IDS_CANT_SAVE_ATTACHMENT"));
        return;
    }
    showInformationBox(textFor("IDS_SUC_SAVE_ATTACHMENT"));
}
} // namespace

void tellMissing(const QString &path)
{
    showErrorBox(textFor("IDS_CANT_FIND_%1").arg(QDir::toNativeSeparators(path)));
}

void openAttachment(const QString &path, QWidget *parent)
{
    const QFileInfo file(path);
    if (!file.isFile())
        tellMissing(path);
    else if (isOpenedByTheDesktop(file.suffix()))
        openInShell(file.absoluteFilePath());
    else
        saveAttachment(path, parent);
}
