#include "views/export_target.h"

#include "base/texts.h"
#include "views/class_texts.h"

#include <QDir>
#include <QFileDialog>

std::optional<ExportTarget> chooseExportTarget(DataClass dataClass, const QString &title, QWidget *parent)
{
    const QList<ClassFormat> &formats = classFormats(dataClass);
    if (!formats.first().ending) {
        const QString folder = QFileDialog::getExistingDirectory(parent, title, QDir::homePath());
        if (folder.isEmpty())
            return std::nullopt;
        return ExportTarget{QLatin1String(formats.first().name), folder};
    }
    QStringList filters;
    for (const ClassFormat &format : formats)
        filters.append(textFor(format.label));
    QString chosen = filters.first();
    const QString proposed = QDir::home().filePath(dataClassName(dataClass) + QLatin1Char('.') +
                                                   QLatin1String(formats.first().ending));
    QString path =
        QFileDialog::getSaveFileName(parent, title, proposed, filters.join(QStringLiteral(";;")), &chosen);
    if (path.isEmpty())
        return std::nullopt;
    const ClassFormat &format = formats.at(std::max<qsizetype>(0, filters.indexOf(chosen)));
    if (QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + QLatin1String(format.ending);
    return ExportTarget{QLatin1String(format.name), path};
}
