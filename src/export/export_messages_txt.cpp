#include "export/export_messages_txt.h"

#include "export/message_text.h"
#include "export/utf8.h"

ExportMessagesTxt::ExportMessagesTxt(const QString &path) : m_file(path), m_dates(DateText::systemShort()) {}

void ExportMessagesTxt::begin()
{
    m_file.open();
}

const QByteArray &ExportMessagesTxt::nameOf(const _MsgChat *chat)
{
    QByteArray &name = m_names[chat];
    if (name.isEmpty())
        name = chat ? chatName(*chat, Addresses::With).toUtf8() : QByteArray("Unknown");
    return name;
}

void ExportMessagesTxt::write(const MessageRef &ref)
{
    QByteArray &out = m_file.buffer();
    out += "Date: ";
    m_dates.append(out, ref.message->date);
    out += ref.message->is_from_me != 0 ? "\nTo: " : "\nFrom: ";
    out += nameOf(ref.chat);
    out += '\n';
    appendUtf8(out, summaryText(*ref.message));
    out += "\n\n";
    m_file.flushIfFull();
}

void ExportMessagesTxt::end()
{
    m_file.commit();
}
