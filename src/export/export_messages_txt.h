#pragma once

#include "export/abs_format_export.h"
#include "export/date_text.h"
#include "export/output_file.h"
#include "messages/msg_records.h"

#include <unordered_map>

/// Messages as plain text, in UTF-8: date, correspondent, what it says, an empty line.
class ExportMessagesTxt : public AbsFormatExport<MessageRef>
{
public:
    explicit ExportMessagesTxt(const QString &path);

    void begin() override;
    void write(const MessageRef &ref) override;
    void end() override;

private:
    OutputFile m_file;
    DateText m_dates;
    std::unordered_map<const _MsgChat *, QByteArray> m_names;

    const QByteArray &nameOf(const _MsgChat *chat);
};
