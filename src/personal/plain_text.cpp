#include "personal/plain_text.h"

#include <QTextDocument>

QString plainTextOfHtml(const QString &html)
{
    // Most summaries hold no markup at all; a document costs a hundred times as much as this.
    if (!html.contains(QLatin1Char('<')) && !html.contains(QLatin1Char('&')))
        return html.simplified();
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    document.setHtml(html);
    return document.toPlainText().trimmed();
}
