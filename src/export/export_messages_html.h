#pragma once

#include "export/abs_format_export.h"
#include "export/bubble_markup.h"
#include "export/output_file.h"

class FilesFolder;

/// One conversation as a page of chat bubbles. Its files stand in the folder "files" beside it, which several
/// pages share.
class ExportMessagesHtml : public AbsFormatExport<MessageRef>
{
public:
    /// `files` and `dates` must outlive it.
    ExportMessagesHtml(const QString &path, FilesFolder &files, DateText &dates,
                       Labels labels = Labels::Names);

    /// "dd MMM yyyy hh:mm AP"
    static DateText dateLines();

    void begin() override;
    void write(const MessageRef &ref) override;
    void end() override;

private:
    OutputFile m_file;
    FilesFolder &m_files;
    BubbleMarkup m_markup;
};
