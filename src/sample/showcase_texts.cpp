#include "sample/showcase_texts.h"

namespace sample {

namespace {

constexpr QByteArrayView tricky[] = {
    "Shall we meet at the bridge at seven?",
    "Yes ✔ see you there", // a symbol of the basic plane that is drawn as a picture
    "\xEE\x80\x81 is U+E001, from the private use area",
    "😀",
    "🇫🇷🇯🇵 two flags of two halves each",
    "👍🏽 skin tone, 👩‍👩‍👧‍👦 joined family, ❤️ with selector",
    "\U0001F9E1 lies outside the two surrogate pages of old",
    "a < b && b > c, said \"Bob\" & 'Eve'",
    "first line\r\nsecond line\nthird line",
    "<script>alert('no')</script><img src=x onerror=alert(1)>",
    "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft"
    "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft"
    "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft",
    "  blanks at both ends  ",
    "\xEF\xBF\xBC", // an attachment's place without an attachment
    "\xEF\xBF\xBD replacement and \xE2\x80\xA8 line separator",
    "https://www.example.org/a?b=1&c=2#d and +1 (415) 555-0100",
    "percent %1 %2 %s %n and back\\slash",
};

constexpr QByteArrayView scripts[] = {
    "שלום, מה שלומך?",
    "مرحبا، كيف حالك؟",
    "mixed עברית and English 123 in one line",
    "e\xCC\x81 combining acute, Z\xCC\xA7\xCD\x88\xCC\xBB\xCC\xA9 stacked marks",
    "\xE2\x80\xAEtxet desrever\xE2\x80\xAC after an override",
    "日本語のテキスト、改行なし",
    "नमस्ते दुनिया",
    "각 jamo: \xE1\x84\x80\xE1\x85\xA1\xE1\x86\xA8",
};

constexpr QByteArrayView table[] = {
    "one, two, three",
    "she said \"yes\"",
    "line\nfeed",
    "carriage\rreturn alone",
    "\"",
    ",",
    "all of them: \"a\", b\nand c",
    "=1+1",
    "@sum and -2 and +3",
    "semi;colon\tand tab",
};

} // namespace

std::span<const QByteArrayView> trickyTexts()
{
    return tricky;
}

std::span<const QByteArrayView> scriptTexts()
{
    return scripts;
}

std::span<const QByteArrayView> tableTexts()
{
    return table;
}

} // namespace sample
