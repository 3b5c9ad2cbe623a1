#pragma once

#include "export/abs_format_export.h"
#include "export/date_text.h"
#include "export/output_file.h"
#include "messages/msg_records.h"

#include <unordered_map>

/// Messages as comma-separated values, in UTF-8, with a header line.
class ExportMessagesCsv : public AbsFormatExport<MessageRef>
{
public:
    explicit ExportMessagesCsv(const QString &path);

    void begin() override;
    void write(const MessageRef &ref) override;
    void end() override;

private:
    OutputFile m_file;
    DateText m_dates;
    std::unordered_map<const _MsgChat *, QByteArray> m_correspondents; // ",person,number,"

    const QByteArray &correspondentOf(const _MsgChat *chat);
};

/// A field as it stands in a line: in double quotes, with those inside doubled, when it holds a line feed, a
/// double quote or a comma.
QByteArray csvField(const QString &field);
