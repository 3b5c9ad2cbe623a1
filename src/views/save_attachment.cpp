#include "views/save_attachment.h"

#include "backup/file_cipher.h"
#include "base/error.h"
#include "base/texts.h"
#include "work/message_boxes.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

void saveAttachment(const QString &path, QWidget *parent)
{
    const QString proposed = QDir::home().filePath(QFileInfo(path).fileName());
    const QString target = QFileDialog::getSaveFileName(parent, textFor("IDS_SAVE_ATTACHMENT"), proposed);
    if (target.isEmpty())
        return;
    try {
        copyFile(path, target);
    } catch (const Error &error) {
        showErrorBox(textFor("IDS_CANT_SAVE_ATTACHMENT") + QLatin1Char('\n') + error.sentence());
        return;
    }
    showInformationBox(textFor("IDS_SUC_SAVE_ATTACHMENT"));
}

void tellMissing(const QString &path)
{
    showErrorBox(textFor("IDS_CANT_FIND_%1").arg(QDir::toNativeSeparators(path)));
}
