#include "export/export_messages_pdf.h"

#include "base/texts.h"
#include "export/pdf_text_map.h"

namespace {
constexpr qreal margin = 20; // points
}

ExportMessagesPdf::ExportMessagesPdf(const QString &path, const QString &title,
                                     PrintedAttachments &attachments)
    : m_file(path), m_device(m_file), m_pages(&m_device), m_printer(m_pages, attachments)
{
    m_pages.setPageSize(QPageSize(QPageSize::A4));
    m_pages.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Point);
    m_pages.setTitle(title);
    m_pages.setCreator(textFor("IDS_PRODUCT_NAME"));
}

QByteArray ExportMessagesPdf::Device::changed(const QByteArray &piece)
{
    return withCommonCharacters(piece);
}

void ExportMessagesPdf::begin()
{
    m_file.open();
    m_printer.begin();
}

void ExportMessagesPdf::write(const MessageRef &ref)
{
    m_printer.print(ref);
    m_device.rethrow();
}

void ExportMessagesPdf::end()
{
    m_printer.end();
    m_device.rethrow();
    m_file.commit();
}
