#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

/// The picture of an emoji, as a PNG: drawn from the system's colour emoji font, or a frame with the code
/// point in it when there is no such font or the font lacks it. `key` is what emojiAt found. Needs a
/// QGuiApplication.
QByteArray emojiPng(char32_t key);

/// The picture of one emoji, which may be several characters that make one picture. Null when there is no
/// colour font or the font lacks it. Needs a QGuiApplication.
QImage emojiPicture(const QString &emoji);

/// The font that emoji are drawn from; empty when the system has none.
QString colourEmojiFamily();
