#include "export/export_messages_html.h"

#include "base/texts.h"
#include "export/files_folder.h"
#include "export/page_policy.h"

namespace {
// A conversation begins without a date line before it.
constexpr std::int64_t noDateLine = 0;
} // namespace

ExportMessagesHtml::ExportMessagesHtml(const QString &path, FilesFolder &files, DateText &dates,
                                       Labels labels)
    : m_file(path),
      m_files(files),
      m_markup({.emojiEndpoint = "files", .emptyPhoto = "files/empty_photo.jpg", .labels = labels}, dates,
               files, noDateLine)
{
}

DateText ExportMessagesHtml::dateLines()
{
    return DateText::fixed(QStringLiteral("dd MMM yyyy"), QStringLiteral("hh:mm AP"));
}

void ExportMessagesHtml::begin()
{
    m_file.open();
    QByteArray &out = m_file.buffer();
    out += "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
           "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">\n"
           "<html xmlns=\"http://www.w3.org/1999/xhtml\">\n"
           "<head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\n";
    out += pageWithFiles;
    out += "\n<title>";
    m_markup.text().append(out, textFor("IDS_PRODUCT_NAME"));
    out += "</title>\n"
           "<link href=\"files/style.css\" type=\"text/css\" rel=\"stylesheet\"/></head><body>\n";
}

void ExportMessagesHtml::write(const MessageRef &ref)
{
    m_markup.append(m_file.buffer(), ref);
    m_file.buffer() += '\n';
    m_file.flushIfFull();
}

void ExportMessagesHtml::end()
{
    m_file.buffer() += "</body></html>\n";
    // The page appears with everything that it shows.
    m_files.addEmojiPictures(m_markup.text().takeNewEmoji());
    m_file.commit();
}
