#include "export/free_names.h"

#include "base/file_names.h"

#include <QDir>
#include <QFileInfo>

namespace {
QString sameNameKey(const QString &name)
{
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
}
} // namespace

FreeNames::FreeNames(const QString &folder) : m_folder(folder)
{
    const QStringList there =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : there)
        m_taken.insert(sameNameKey(name));
}

bool FreeNames::takeIfFree(const QString &name)
{
    const QString key = sameNameKey(name);
    if (m_taken.contains(key))
        return false;
    m_taken.insert(key);
    // Another program may have put a file there meanwhile; a dangling link occupies its name too.
    const QFileInfo info(QDir(m_folder).filePath(name));
    return !info.exists() && !info.isSymLink();
}

QString FreeNames::take(const QString &name)
{
    const auto [stem, end] = splitAtLastDot(name);
    const QString whole = fittingFileName(stem, end);
    if (takeIfFree(whole))
        return whole;
    const QString base = end.isEmpty() ? name : name.left(name.indexOf(QLatin1Char('.')));
    // Names that differ behind what fits become one, and count on together.
    int &number = m_lastNumber[sameNameKey(fittingFileName(base, end))];
    for (;;) {
        ++number;
        const QString numbered = fittingFileName(base, QStringLiteral("(%1)").arg(number) + end);
        if (takeIfFree(numbered))
            return numbered;
    }
}

void FreeNames::release(const QString &name)
{
    m_taken.remove(sameNameKey(name));
}

QString portableFileName(const QString &text, const QString &fallback)
{
    QString name = safeFileName(text);
    // The wrapped name of a device may still carry a suffix with such characters.
    name.removeIf([](QChar c) {
        return c.unicode() < 0x20 || c.unicode() == 0x7F || QStringView(u"\\/:*?\"<>|").contains(c);
    });
    while (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' ')))
        name.chop(1);
    return name.isEmpty() ? fallback : name;
}
