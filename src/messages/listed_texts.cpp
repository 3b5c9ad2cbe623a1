#include "messages/listed_texts.h"

#include "backup/cf_type.h"

namespace {
/// An archive keeps its objects in one array and refers to them by their place in it.
class ArchivedObjects
{
public:
    explicit ArchivedObjects(const CFType &archive) : m_objects(archive.get(QStringLiteral("$objects")))
    {
        m_root = resolved(archive.get(QStringLiteral("$top")).get(QStringLiteral("root")));
    }

    CFType items() const { return m_root.get(QStringLiteral("NS.objects")); }

    /// A plain string, or one that a class of its own wraps.
    CFType string(const CFType &reference) const
    {
        const CFType object = resolved(reference);
        return object.isDictionary() ? object.get(QStringLiteral("NS.string")) : object;
    }

private:
    CFType resolved(const CFType &reference) const
    {
        return reference.isUid() ? m_objects.at(reference.uid()) : CFType();
    }

    CFType m_objects;
    CFType m_root;
};

void appendString(QStringList &texts, const CFType &value)
{
    if (value.isString())
        texts.append(value.toString());
}
} // namespace

std::optional<QStringList> listedTexts(QByteArrayView plist)
{
    const CFType root = CFType::parse(plist);
    QStringList texts;
    if (root.isArray()) {
        for (qsizetype i = 0; i < root.count(); ++i)
            appendString(texts, root.at(i));
        return texts;
    }
    const ArchivedObjects archive(root);
    const CFType items = archive.items();
    if (!items.isArray())
        return std::nullopt;
    for (qsizetype i = 0; i < items.count(); ++i)
        appendString(texts, archive.string(items.at(i)));
    return texts;
}
