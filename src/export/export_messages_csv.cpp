#include "export/export_messages_csv.h"

#include "export/message_text.h"

#include <QRegularExpression>

namespace {
// Old messages have them for line breaks. Unquoted, as they have to stay, they end a row for many readers.
QString withoutLoneReturns(QString text)
{
    static const QRegularExpression loneReturn(QStringLiteral("\\r(?!\\n)"));
    return text.contains(QLatin1Char('\r')) ? text.replace(loneReturn, QStringLiteral("\n")) : text;
}
} // namespace

ExportMessagesCsv::ExportMessagesCsv(const QString &path)
    : m_file(path), m_dates(DateText::fixed(QStringLiteral("yyyy-MM-dd"), QStringLiteral("hh:mm:ss")))
{
}

void ExportMessagesCsv::begin()
{
    m_file.open();
    m_file.buffer() += "date,send,person,number,content\n";
}

const QByteArray &ExportMessagesCsv::correspondentOf(const _MsgChat *chat)
{
    QByteArray &fields = m_correspondents[chat];
    if (!fields.isEmpty())
        return fields;
    QString person;
    QString number;
    if (chat && chat->isGroup()) {
        person = number = chat->chat_identifier;
    } else if (chat && !chat->handles.empty()) {
        person = chat->handles.front()->_ct_name;
        number = chat->handles.front()->id;
    }
    fields = "," + csvField(person) + "," + csvField(number) + ",";
    return fields;
}

void ExportMessagesCsv::write(const MessageRef &ref)
{
    QByteArray &out = m_file.buffer();
    m_dates.append(out, ref.message->date);
    out += ref.message->is_from_me != 0 ? ",1" : ",0";
    out += correspondentOf(ref.chat);
    out += csvField(withoutLoneReturns(summaryText(*ref.message)));
    out += '\n';
    m_file.flushIfFull();
}

void ExportMessagesCsv::end()
{
    m_file.commit();
}

QByteArray csvField(const QString &field)
{
    QByteArray bytes = field.toUtf8();
    if (!bytes.contains('\n') && !bytes.contains('"') && !bytes.contains(','))
        return bytes;
    return '"' + bytes.replace('"', "\"\"") + '"';
}
