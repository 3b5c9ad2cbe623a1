#include "work/shown_text.h"

#include <QChar>

namespace {
constexpr qsizetype longestWord = 60;
constexpr qsizetype longestToolTip = 1000;
constexpr QChar zeroWidthSpace(0x200b);

// A line may break behind these by itself.
bool endsWord(QChar character)
{
    return character.isSpace() || character == QLatin1Char('/') || character == QLatin1Char('\\');
}
} // namespace

QString breakable(const QString &text)
{
    QString broken;
    broken.reserve(text.size());
    qsizetype length = 0;
    for (const QChar character : text) {
        // Never within a character of two units.
        if (length >= longestWord && !character.isLowSurrogate()) {
            broken += zeroWidthSpace;
            length = 0;
        }
        broken += character;
        length = endsWord(character) ? 0 : length + 1;
    }
    return broken;
}

QString toolTipOf(const QString &text)
{
    if (text.isEmpty())
        return {};
    const QString shown = text.size() > longestToolTip ? text.left(longestToolTip) + QChar(0x2026) : text;
    return QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>").arg(breakable(shown).toHtmlEscaped());
}
