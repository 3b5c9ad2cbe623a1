#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

/// The text of an attributed string that a device archived as a typed stream (it begins with 04 0B
/// "streamtyped"). Nothing when the bytes are no such stream, are cut off before the text ends, or hold
/// another object. U+FFFC stands where an attachment belongs.
std::optional<QString> typedStreamText(QByteArrayView bytes);
