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
