#pragma once

#include <QStringView>

/// An emoji that is shown as a picture.
struct EmojiHit
{
    char32_t key = 0; // the picture's name is this in upper-case hexadecimal
    int units = 0;    // UTF-16 units; 0 when no such emoji is meant
};

/// No unit below it begins an emoji.
inline constexpr char16_t firstEmojiUnit = 0x203C;

/// The emoji that begins at unit `i`: one of the private-use characters U+E000 to U+E537 that old telephones
/// sent, one of some forty symbols, or a character of U+1F000 to U+1F7FF. A half of such a character without
/// its other half is none.
EmojiHit emojiAt(QStringView text, qsizetype i);

/// Units of the emoji that begins at unit `i` with all that makes one picture of it: a skin colour, a choice
/// of look, what it is joined to, the second letter of a flag. 0 when none begins there. Knows the emoji of
/// today, which are more than emojiAt's.
int emojiSequenceAt(QStringView text, qsizetype i);

/// True for the characters of telephone keys, which begin an emoji when the sign of a key follows.
bool isKeycapBase(QChar c);
