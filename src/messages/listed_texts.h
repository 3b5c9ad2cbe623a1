#pragma once

#include <QByteArrayView>
#include <QStringList>

#include <optional>

/// The texts of a property list that is an array of strings, or an archive of such an array. Items of another
/// kind are passed over; nothing is returned for bytes that are neither.
std::optional<QStringList> listedTexts(QByteArrayView plist);
