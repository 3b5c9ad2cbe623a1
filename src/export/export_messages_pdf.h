#pragma once

#include "export/abs_format_export.h"
#include "export/mms_printer.h"
#include "export/output_device.h"
#include "export/output_file.h"

#include <QPdfWriter>

/// One conversation as pages of chat bubbles in a PDF file. Needs a QGuiApplication.
class ExportMessagesPdf : public AbsFormatExport<MessageRef>
{
public:
    /// `title` is what programs show of the file instead of its name. `attachments` must outlive it.
    ExportMessagesPdf(const QString &path, const QString &title, PrintedAttachments &attachments);

    void begin() override;
    void write(const MessageRef &ref) override;
    void end() override;

private:
    class Device : public OutputDevice
    {
    public:
        using OutputDevice::OutputDevice;

    protected:
        QByteArray changed(const QByteArray &piece) override;
    };

    OutputFile m_file;
    Device m_device;
    QPdfWriter m_pages;
    MMSPrinter m_printer;
};
