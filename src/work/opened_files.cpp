#include "work/opened_files.h"

#include "base/contained_path.h"
#include "base/error.h"
#include "base/private_folder.h"
#include "base/texts.h"

#include <QFileInfo>
#include <QStringList>

bool isOpenedByTheDesktop(const QString &name)
{
    static const QStringList endings = QStringLiteral("jpg jpeg png gif bmp tif tiff webp heic heif avif dng "
                                                      "mov mp4 m4v 3gp "
                                                      "amr m4a mp3 aac caf wav")
                                           .split(u' ');
    return endings.contains(QFileInfo(name).suffix(), Qt::CaseInsensitive);
}

QString placeToOpen(const QString &owner, const QString &id, const QString &name)
{
    const auto path = containedPath(openedFilesFolder(owner), id + u'/' + name);
    // The name that the file gets is the one that counts, not the one it had.
    if (!path || !isOpenedByTheDesktop(*path))
        throw Error(textFor("IDS_NOT_OPENED_%1").arg(name));
    return *path;
}
