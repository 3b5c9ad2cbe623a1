#include "cli/line_text.h"

#include <algorithm>

bool isUnprintable(char16_t letter)
{
    const bool isControl = letter < 0x20 || (letter >= 0x7F && letter <= 0x9F);
    const bool isSeparator = letter == 0x2028 || letter == 0x2029;
    const bool isDirection = letter == 0x061C || letter == 0x200E || letter == 0x200F ||
                             (letter >= 0x202A && letter <= 0x202E) || (letter >= 0x2066 && letter <= 0x2069);
    return isControl || isSeparator || isDirection;
}

QString oneLine(const QString &text)
{
    QString line = text;
    for (QChar &letter : line)
        if (isUnprintable(letter.unicode()))
            letter = QLatin1Char(letter == QLatin1Char('\n') ? ' ' : '?');
    return line;
}

QString plainTable(const QStringList &headings, const QList<QStringList> &rows)
{
    constexpr qsizetype gap = 2;
    QList<QStringList> lines = rows;
    if (!headings.isEmpty())
        lines.prepend(headings);
    QList<qsizetype> widths(lines.isEmpty() ? 0 : lines.first().size(), 0);
    for (const QStringList &cells : lines) {
        for (qsizetype i = 0; i < cells.size(); ++i)
            widths[i] = std::max(widths[i], oneLine(cells[i]).size());
    }
    QString table;
    for (const QStringList &cells : lines) {
        QString line;
        for (qsizetype i = 0; i < cells.size(); ++i)
            line += oneLine(cells[i]).leftJustified(widths[i] + gap);
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        table += line + QLatin1Char('\n');
    }
    return table;
}
