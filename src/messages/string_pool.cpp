#include "messages/string_pool.h"

namespace {
// A column with more values than this does not repeat itself: remembering them would only cost memory.
constexpr std::size_t maxTexts = 4096;
} // namespace

QString StringPool::text(QByteArrayView utf8)
{
    if (utf8.isEmpty())
        return {};
    const std::string_view key(utf8.data(), static_cast<std::size_t>(utf8.size()));
    if (key == m_lastKey)
        return m_last;
    const auto known = m_texts.find(key);
    if (known == m_texts.end() && m_texts.size() >= maxTexts)
        return QString::fromUtf8(utf8);
    m_last =
        known == m_texts.end() ? m_texts.emplace(key, QString::fromUtf8(utf8)).first->second : known->second;
    m_lastKey = key;
    return m_last;
}
