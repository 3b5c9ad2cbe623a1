#include "base/contained_path.h"

#include "base/file_names.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace {
constexpr const char *deviceNames[] = {"CON",  "PRN",  "AUX",  "NUL",  "CLOCK$", "COM1", "COM2", "COM3",
                                       "COM4", "COM5", "COM6", "COM7", "COM8",   "COM9", "LPT1", "LPT2",
                                       "LPT3", "LPT4", "LPT5", "LPT6", "LPT7",   "LPT8", "LPT9"};

bool namesDevice(const QString &component)
{
    const QString base = component.section(QLatin1Char('.'), 0, 0).trimmed();
    for (const char *name : deviceNames)
        if (base.compare(QLatin1String(name), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

bool isForbidden(QChar c)
{
    return c.unicode() < 0x20 || QStringLiteral("\\:*?\"<>|").contains(c);
}

QString portable(QString component)
{
    for (QChar &c : component)
        if (isForbidden(c))
            c = QLatin1Char('_');
    QChar &last = component.back();
    if (last == QLatin1Char('.') || last == QLatin1Char(' '))
        last = QLatin1Char('_');
    return component;
}

QString problemOf(const QString &path, NameRules rules)
{
    const bool isWindows = rules == NameRules::Windows;
    if (path.isEmpty())
        return QStringLiteral("the path is empty");
    if (path.startsWith(QLatin1Char('/')) || (isWindows && path.startsWith(QLatin1Char('\\'))))
        return QStringLiteral("the path is absolute");
    if (isWindows && path.size() >= 2 && path.at(1) == QLatin1Char(':') && path.at(0).unicode() < 128 &&
        path.at(0).isLetter())
        return QStringLiteral("the path begins with a drive letter");
    return {};
}

QString problemOfComponent(const QString &component, NameRules rules)
{
    if (component.isEmpty() || component == QLatin1String("."))
        return QStringLiteral("the path has an empty component");
    // On Windows a backslash separates too, so "..\x" climbs as "../x" does.
    const QChar separator = rules == NameRules::Windows ? QLatin1Char('\\') : QLatin1Char('/');
    if (component.split(separator).contains(QStringLiteral("..")))
        return QStringLiteral("the path climbs with \"..\"");
    return {};
}
} // namespace

std::optional<QString> containedPath(const QString &folder, const QString &relativePath, QString *whyNot)
{
    QString problem = relativePath.contains(QChar(0)) ? QStringLiteral("the path holds a NUL character")
                                                      : whyNotBelow(relativePath, NameRules::Windows);
    QStringList components = relativePath.split(QLatin1Char('/'));
    for (qsizetype i = 0; problem.isEmpty() && i < components.size(); ++i) {
        if (namesDevice(components[i]))
            problem = QStringLiteral("\"%1\" names a device").arg(components[i]);
        else
            components[i] = portable(components[i]);
    }
    if (!problem.isEmpty()) {
        if (whyNot)
            *whyNot = problem;
        return std::nullopt;
    }
    return QDir(folder).filePath(components.join(QLatin1Char('/')));
}

QString whyNotBelow(const QString &relativePath, NameRules rules)
{
    QString why = problemOf(relativePath, rules);
    const QStringList components = relativePath.split(QLatin1Char('/'));
    for (qsizetype i = 0; why.isEmpty() && i < components.size(); ++i)
        why = problemOfComponent(components[i], rules);
    return why;
}

QString landingName(const QString &name, NameRules rules)
{
    QString taken = name;
    if (rules == NameRules::Windows) {
        if (namesDevice(taken)) {
            const QString base = taken.section(QLatin1Char('.'), 0, 0);
            taken.replace(0, base.size(), QStringLiteral("$$%1$$").arg(base));
        }
        taken = portable(taken);
    }
    taken.replace(QChar(0), QLatin1Char('_'));
    const NameEnds ends = splitAtLastDot(taken);
    return fittingFileName(ends.stem, ends.end);
}

bool staysBelow(const QString &folder, const QString &path)
{
    const QString root = QFileInfo(folder).canonicalFilePath();
    if (root.isEmpty())
        return false;
    QFileInfo existing(path);
    while (!existing.exists() && !existing.isSymLink() &&
           existing.absolutePath() != existing.absoluteFilePath())
        existing.setFile(existing.absolutePath());
    const QString real = existing.canonicalFilePath();
    return real == root || real.startsWith(root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/'));
}
