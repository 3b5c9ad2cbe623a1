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

/// The path with every component that names a device in a form that names none: "con.txt" as "$$con$$.txt".
/// An application's folder may well be called "aux", and what is in it is as dear as the rest.
QString withoutDeviceNames(const QString &relativePath);

/// True when `path` (which need not exist yet) lies below `folder` once every symbolic link on the way to it
/// that exists is followed.
bool staysBelow(const QString &folder, const QString &path);
