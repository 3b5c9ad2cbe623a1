#include "export/free_names.h"

#include "base/file_names.h"

#include <QDir>
#include <QFileInfo>
#include <QTextBoundaryFinder>

namespace {
constexpr qsizetype longestNameBytes = 255;
// A longer end of a name is no file name extension.
constexpr qsizetype longestExtensionBytes = 32;

QString sameNameKey(const QString &name)
{
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
}

/// As much of `stem`, in whole characters, as leaves room for `end`.
QString fitted(const QString &stem, const QString &end)
{
    const qsizetype room = longestNameBytes - end.toUtf8().size();
    if (stem.toUtf8().size() <= room)
        return stem + end;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, stem);
    qsizetype bytes = 0;
    qsizetype kept = 0;
    for (qsizetype next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary()) {
        bytes += QStringView(stem).sliced(kept, next - kept).toUtf8().size();
        if (bytes > room)
            break;
        kept = next;
    }
    return stem.left(kept) + end;
}

struct Parts
{
    QString stem;
    QString end; // with its dot
};

Parts splitAtLastDot(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0 || name.mid(dot).toUtf8().size() > longestExtensionBytes)
        return {name, {}};
    return {name.left(dot), name.mid(dot)};
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
    const QString whole = fitted(stem, end);
    if (takeIfFree(whole))
        return whole;
    const QString base = end.isEmpty() ? name : name.left(name.indexOf(QLatin1Char('.')));
    int &number = m_lastNumber[sameNameKey(base + end)];
    for (;;) {
        ++number;
        const QString numbered = fitted(base, QStringLiteral("(%1)").arg(number) + end);
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
