#pragma once

#include <QByteArray>

/// The picture of an emoji, as a PNG: drawn from the system's colour emoji font, or a frame with the code
/// point in it when there is no such font or the font lacks it. `key` is what emojiAt found. Needs a
/// QGuiApplication.
QByteArray emojiPng(char32_t key);
