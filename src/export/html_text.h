#pragma once

#include <QByteArray>
#include <QStringView>

#include <unordered_set>
#include <vector>

/// Text as it stands in a page: escaped, line breaks as markup, emoji as pictures that lie in a folder of the
/// page's own. Remembers which pictures the page needs.
class HtmlText
{
public:
    /// Pictures are looked for at `endpoint` + "/app_res/emoji/KEY.png"; "files" in an export.
    explicit HtmlText(const QByteArray &endpoint);

    /// Appends UTF-8.
    void append(QByteArray &out, QStringView text);

    /// The keys of the pictures that were needed for the first time since the last call.
    std::vector<char32_t> takeNewEmoji();

private:
    QByteArray m_imageBegin;
    std::unordered_set<char32_t> m_known;
    std::vector<char32_t> m_new;

    void appendEmoji(QByteArray &out, char32_t key);
};

/// The key as a file name without its suffix: upper-case hexadecimal without leading zeros.
QByteArray emojiName(char32_t key);

/// A file name as one component of a relative address, fit for an attribute.
QByteArray addressOf(const QString &fileName);
