#include "export/emoji_scan.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace {
constexpr std::array<char16_t, 44> symbols = {
    0x203C, 0x2049, 0x2139, 0x2194, 0x2195, 0x21A9, 0x21AA, 0x231A, 0x231B, 0x23EB, 0x23EC,
    0x23F0, 0x23F3, 0x24C2, 0x25AA, 0x25AB, 0x25FB, 0x25FC, 0x25FD, 0x25FE, 0x2611, 0x267B,
    0x2693, 0x26AA, 0x26AB, 0x26C5, 0x26D4, 0x2705, 0x2709, 0x270F, 0x2712, 0x2714, 0x2744,
    0x2747, 0x274E, 0x2795, 0x2796, 0x2797, 0x27B0, 0x2934, 0x2935, 0x2B1B, 0x2B1C, 0x3030};

constexpr char16_t privateUseFirst = 0xE000;
constexpr char16_t privateUseLast = 0xE537;

constexpr char16_t emojiLook = 0xFE0F;
constexpr char16_t textLook = 0xFE0E;
constexpr char16_t joiner = 0x200D;
constexpr char16_t keycap = 0x20E3;

char16_t unitAt(QStringView text, qsizetype i)
{
    return i < text.size() ? text[i].unicode() : char16_t(0);
}

char32_t characterAt(QStringView text, qsizetype i)
{
    const char16_t unit = unitAt(text, i);
    const char16_t next = unitAt(text, i + 1);
    return QChar::isHighSurrogate(unit) && QChar::isLowSurrogate(next) ? QChar::surrogateToUcs4(unit, next)
                                                                       : unit;
}

int unitsOf(char32_t character)
{
    return QChar::requiresSurrogates(character) ? 2 : 1;
}

bool isFlagLetter(char32_t character)
{
    return character >= 0x1F1E6 && character <= 0x1F1FF;
}

/// What changes the emoji before it.
bool isModifier(char32_t character)
{
    return character == emojiLook || character == keycap || (character >= 0x1F3FB && character <= 0x1F3FF) ||
           (character >= 0xE0020 && character <= 0xE007F);
}

/// Units of the character that an emoji begins with, 0 when none does.
int emojiBaseAt(QStringView text, qsizetype i)
{
    const char16_t unit = unitAt(text, i);
    if (isKeycapBase(QChar(unit)))
        return unitAt(text, i + 1) == keycap ||
                       (unitAt(text, i + 1) == emojiLook && unitAt(text, i + 2) == keycap)
                   ? 1
                   : 0;
    if (const EmojiHit hit = emojiAt(text, i); hit.units > 0)
        return hit.units;
    const char32_t character = characterAt(text, i);
    if (character >= 0x1F800 && character <= 0x1FAFF)
        return 2;
    return character >= firstEmojiUnit && unitAt(text, i + unitsOf(character)) == emojiLook
               ? unitsOf(character)
               : 0;
}
} // namespace

EmojiHit emojiAt(QStringView text, qsizetype i)
{
    const char16_t unit = text[i].unicode();
    if (unit < firstEmojiUnit)
        return {};
    if (unit == 0xD83C || unit == 0xD83D) {
        if (i + 1 < text.size() && text[i + 1].isLowSurrogate())
            return {QChar::surrogateToUcs4(unit, text[i + 1].unicode()), 2};
        return {};
    }
    const bool isOne = (unit >= privateUseFirst && unit <= privateUseLast) ||
                       (unit <= symbols.back() && std::binary_search(symbols.begin(), symbols.end(), unit));
    return isOne ? EmojiHit{unit, 1} : EmojiHit{};
}

bool isKeycapBase(QChar c)
{
    return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('#') || c == QLatin1Char('*');
}

int emojiSequenceAt(QStringView text, qsizetype i)
{
    int units = emojiBaseAt(text, i);
    if (units == 0 || unitAt(text, i + units) == textLook)
        return 0;
    if (isFlagLetter(characterAt(text, i)))
        return isFlagLetter(characterAt(text, i + units)) ? 2 * units : units;
    for (;;) {
        const char32_t next = characterAt(text, i + units);
        const char32_t joined = next == joiner ? characterAt(text, i + units + 1) : 0;
        if (isModifier(next))
            units += unitsOf(next);
        else if (joined >= firstEmojiUnit)
            units += 1 + unitsOf(joined);
        else
            return units;
    }
}
