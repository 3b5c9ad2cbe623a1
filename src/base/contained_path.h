#pragma once

#include <QString>

#include <optional>

/// Joins a "/"-separated relative path out of a backup to a folder, so that the result never leaves it.
/// Nothing is returned for a path that is absolute or empty, has a drive letter, holds "..", "." or an empty
/// component, a NUL, or a component that names a device; `whyNot`, when given, then says why in a few words.
/// Characters that a desktop file system forbids (\ : * ? " < > | and control characters) are replaced by
/// "_", and dots and blanks at the end of a component are too.
std::optional<QString> containedPath(const QString &folder, const QString &relativePath,
                                     QString *whyNot = nullptr);

/// Which names a file system takes.
enum class NameRules { Unix, Windows };
#ifdef Q_OS_WIN
inline constexpr NameRules ownNameRules = NameRules::Windows;
#else
inline constexpr NameRules ownNameRules = NameRules::Unix;
#endif

/// Why a "/"-separated relative path out of a backup may not be followed below a folder, in a few words: it is
/// absolute, climbs, or has an empty component; by Windows' rules, too, for a drive letter. Empty when it may.
QString whyNotBelow(const QString &relativePath, NameRules rules);

/// One component of a path as a name that these rules take, which is the name itself wherever they do. On Unix only
/// a NUL and more than 255 bytes are too much. On Windows "con.txt" becomes "$$con$$.txt", since an application's
/// folder may well be called "aux" and what is in it is as dear as the rest, and what else is forbidden becomes "_".
QString landingName(const QString &name, NameRules rules);

/// True when `path` (which need not exist yet) lies below `folder` once every symbolic link on the way to it
/// that exists is followed.
bool staysBelow(const QString &folder, const QString &path);
