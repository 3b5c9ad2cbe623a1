#include "export/vcard_photo.h"

#include "personal/vcard_lines.h"

namespace {
bool isPicture(const QByteArray &bytes)
{
    return bytes.startsWith("\xFF\xD8\xFF") || bytes.startsWith("\x89PNG\r\n\x1A\n") ||
           bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a");
}
} // namespace

QByteArray vCardPhoto(const QByteArray &vCard)
{
    for (const VCardLine &line : splitVCardLines(vCard)) {
        const QByteArray picture = line.name == "PHOTO" && line.carriesBytes()
                                       ? line.embeddedBytes().value_or(QByteArray())
                                       : QByteArray();
        if (isPicture(picture))
            return picture;
    }
    return {};
}
