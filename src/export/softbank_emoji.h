#pragma once

#include <QString>

/// What a private-use character of old Japanese telephones (U+E001 to U+E537) shows, in today's characters;
/// empty for one that never had a picture.
QString modernEmojiOf(char32_t privateUse);
