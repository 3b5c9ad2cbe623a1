#pragma once

#include <QByteArrayView>
#include <QString>

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

/// Turns the UTF-8 texts of a column whose values repeat into strings that share one buffer.
class StringPool
{
public:
    QString text(QByteArrayView utf8);

private:
    struct Hash
    {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };

    std::string m_lastKey;
    QString m_last;
    std::unordered_map<std::string, QString, Hash, std::equal_to<>> m_texts;
};
