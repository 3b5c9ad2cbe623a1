#include "cli/line_text.h"

#include <algorithm>

QString oneLine(const QString &text)
{
    QString line = text;
    for (QChar &letter : line) {
        const bool separator =
            letter.category() == QChar::Separator_Line || letter.category() == QChar::Separator_Paragraph;
        if (letter.category() == QChar::Other_Control || separator)
            letter = QLatin1Char(letter == QLatin1Char('\n') ? ' ' : '?');
    }
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
