#include "export/pdf_text_map.h"

#include <QString>

namespace {
constexpr qsizetype digits = 4;

bool isSeldomTyped(char16_t unit)
{
    return (unit >= 0x2E80 && unit < 0x2FE0)     // radicals
           || (unit >= 0xFB50 && unit < 0xFE00)  // Arabic letters by form
           || (unit >= 0xFE70 && unit < 0xFEFF); // more of them
}

/// The same character as it is typed; itself when that takes several.
char16_t commonCharacter(char16_t unit)
{
    const QString common = QString(QChar(unit)).normalized(QString::NormalizationForm_KC);
    return isSeldomTyped(unit) && common.size() == 1 ? common[0].unicode() : unit;
}
} // namespace

QByteArray withCommonCharacters(const QByteArray &piece)
{
    qsizetype at = piece.indexOf("beginbfrange");
    if (at < 0)
        return piece;
    const qsizetype end = piece.indexOf("endcmap", at);
    QByteArray result = piece;
    // A list of characters stands in square brackets, each as "<65E5>".
    for (at = piece.indexOf('[', at); at >= 0 && at < end; at = piece.indexOf('[', at)) {
        for (++at; at < end && piece[at] != ']'; ++at) {
            bool isNumber = false;
            const ushort unit = piece.mid(at + 1, digits).toUShort(&isNumber, 16);
            if (piece[at] == '<' && isNumber)
                result.replace(at + 1, digits,
                               QByteArray::number(commonCharacter(unit), 16).rightJustified(digits, '0'));
        }
    }
    return result;
}
