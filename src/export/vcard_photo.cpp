#include "export/vcard_photo.h"

namespace {
/// From `at`, one line with the lines that continue it (those begin with a blank), without line ends; moves
/// `at` behind it.
QByteArray nextUnfoldedLine(const QByteArray &text, qsizetype &at)
{
    QByteArray line;
    for (bool first = true; at < text.size(); first = false) {
        if (!first && text[at] != ' ' && text[at] != '\t')
            break;
        qsizetype end = text.indexOf('\n', at);
        if (end < 0)
            end = text.size();
        const qsizetype begin = first ? at : at + 1;
        line.append(text.constData() + begin, end - begin);
        if (line.endsWith('\r'))
            line.chop(1);
        at = end + 1;
    }
    return line;
}

bool isPicture(const QByteArray &bytes)
{
    return bytes.startsWith("\xFF\xD8\xFF") || bytes.startsWith("\x89PNG\r\n\x1A\n") ||
           bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a");
}

/// The Base64 text of a PHOTO line; empty for any other line and for a photo that lies elsewhere.
QByteArray photoText(const QByteArray &line)
{
    const qsizetype colon = line.indexOf(':');
    if (colon < 0)
        return {};
    const QByteArray head = line.left(colon).toUpper();
    QByteArray name = head.left(head.indexOf(';') < 0 ? head.size() : head.indexOf(';'));
    name = name.mid(name.lastIndexOf('.') + 1); // a property of a group: "item1.PHOTO"
    if (name != "PHOTO")
        return {};
    if (head.contains("ENCODING=B") || head.contains(";BASE64"))
        return line.mid(colon + 1);
    const QByteArray value = line.mid(colon + 1);
    const qsizetype data = value.toLower().indexOf(";base64,");
    return value.toLower().startsWith("data:") && data > 0 ? value.mid(data + 8) : QByteArray();
}
} // namespace

QByteArray vCardPhoto(const QByteArray &vCard)
{
    for (qsizetype at = 0; at < vCard.size();) {
        const QByteArray bytes = QByteArray::fromBase64(photoText(nextUnfoldedLine(vCard, at)));
        if (isPicture(bytes))
            return bytes;
    }
    return {};
}
