#include "export/contacts_export.h"

#include "base/error.h"
#include "base/texts.h"
#include "export/contacts_html.h"
#include "export/contacts_table.h"
#include "export/text_file.h"
#include "export/vcard_export.h"

#include <QRegularExpression>

#include <algorithm>

namespace {
void writeVCards(const QList<ContactRecord> &contacts, TextFile &file, CountedProgress &progress)
{
    for (const ContactRecord &contact : contacts) {
        progress.item();
        file.writeBytes(VCardExport::exportContact(contact));
    }
}

// Cells are joined as they are: programs that read these files have come to expect it.
void writeCsv(const QList<ContactRecord> &contacts, TextFile &file, CountedProgress &progress)
{
    const ContactsTable table(contacts);
    file.writeLine(table.titles().join(QLatin1Char(',')));
    for (const ContactRecord &contact : contacts) {
        progress.item();
        file.writeLine(table.cells(contact).join(QLatin1Char(',')));
    }
}

QStringList onOneLine(QStringList cells)
{
    static const QRegularExpression lineBreak(QStringLiteral("[\\r\\n]"));
    return cells.replaceInStrings(lineBreak, QStringLiteral(" "));
}

void widen(QList<qsizetype> &widths, const QStringList &cells)
{
    for (qsizetype i = 0; i < cells.size(); ++i)
        widths[i] = std::max(widths[i], cells.at(i).size());
}

QString padded(const QList<qsizetype> &widths, const QStringList &cells)
{
    QString line;
    for (qsizetype i = 0; i < cells.size(); ++i)
        line += cells.at(i).leftJustified(widths.at(i) + 2);
    return line;
}

void writeText(const QList<ContactRecord> &contacts, TextFile &file, CountedProgress &progress)
{
    const ContactsTable table(contacts);
    QList<qsizetype> widths(table.titles().size(), 0);
    widen(widths, table.titles());
    for (const ContactRecord &contact : contacts)
        widen(widths, table.cells(contact));
    file.writeLine(padded(widths, table.titles()));
    for (const ContactRecord &contact : contacts) {
        progress.item();
        file.writeLine(padded(widths, onOneLine(table.cells(contact))));
    }
}

void writeHtml(const QList<ContactRecord> &contacts, const QString &path, TextFile &file,
               CountedProgress &progress, Report &report)
{
    ContactsHtml page(path);
    file.write(page.head());
    const auto close = [&] { file.write(page.tail()); };
    try {
        for (const ContactRecord &contact : contacts) {
            progress.item();
            file.write(page.card(contact));
        }
    } catch (const Cancelled &) {
        close();
        throw;
    }
    close();
    if (page.unreadablePictures() > 0)
        report.add({.kind = IssueKind::Damaged,
                    .what = "IDS_ISSUE_PICTURES_OF_CONTACTS_UNREADABLE",
                    .count = page.unreadablePictures()});
}
} // namespace

Report exportContacts(const QList<ContactRecord> &contacts, ContactFormat format, const QString &path,
                      Progress &progress)
{
    TextFile file(path);
    CountedProgress counted(progress, textFor("IDS_EXPORTING_CONTACTS_TO_FILE"),
                            QStringLiteral("Contacts:%1/%2"), contacts.size());
    Report report;
    file.keepWhenCancelled([&] {
        switch (format) {
        case ContactFormat::VCard:
            return writeVCards(contacts, file, counted);
        case ContactFormat::Csv:
            return writeCsv(contacts, file, counted);
        case ContactFormat::Text:
            return writeText(contacts, file, counted);
        case ContactFormat::Html:
            return writeHtml(contacts, path, file, counted, report);
        }
    });
    report.done = contacts.size();
    return report;
}
