#include "export/softbank_emoji.h"

#include <iterator>

namespace {
// Six pages, each from its second place on; the flags in the last one stand apart. An ASCII character means
// the telephone key with it.
struct Page
{
    char32_t first;
    const char32_t *pictures;
    std::size_t count;
};

constexpr char32_t pageE0[] = U"👦👧💋👨👩👕👟📷☎📱📠💻👊👍☝✊✌✋🎿⛳🎾⚾🏄⚽🐟🐴🚗⛵✈🚃🚅❓❗❤💔🕐🕑🕒🕓🕔🕕🕖🕗🕘🕙🕚🕛🌸🔱🌹🎄💍💎🏠⛪🏢🚉⛽🗻🎤🎥🎵🔑🎷🎸🎺🍴"
                              U"🍸☕🍰🍺⛄☁☀☔🌙🌄👼🐱🐯🐻🐶🐭🐳🐧😊😃😞😠💩";
constexpr char32_t pageE1[] = U"📫📮📩📲😜😍😱😓🐵🐙🐷👽🚀👑💡🍀💏🎁🔫🔍🏃🔨🎆🍁🍂👿👻💀🔥💼💺🍔⛲⛺♨🎡🎫💿📀📻📼📺👾〽🀄🆚💰🎯🏆🏁🎰🐎🚤🚲🚧🚹🚺🚼💉💤⚡👠🛀🚽🔊📢🎌"
                              U"🔒🔓🌆🍳📖💱💹📡💪🏦🚥🅿🚏🚻👮🏣🏧🏥🏪🏫🏨🚌🚕";
constexpr char32_t pageE2[] =
    U"🚶🚢🈁💟✴✳🔞🚭🔰♿📶♥♦♠♣#➿🆕🆙🆒🈶🈚🈷🈸🔴🔲🔳1234567890🉐🈹🈂🆔🈵🈳🈯🈺👆👇👈👉⬆⬇➡⬅↗↖↘↙▶◀⏩⏪🔯♈♉♊♋♌♍♎♏♐♑♒♓⛎🔝🆗©®📳📴⚠💁";
constexpr char32_t pageE3[] = U"📝👔🌺🌷🌻💐🌴🌵🚾🎧🍶🍻㊗🚬💊🎈💣🎉✂🎀㊙💽📣👒👗👡👢💄💅💆💇💈👘👙👜🎬🔔🎶💓💗💘💙💚💛💜✨⭐💨💦⭕❌💢🌟❔❕🍵🍞🍦🍟🍡🍘🍚🍝🍜🍛🍙🍢🍣🍎"
                              U"🍊🍓🍉🍅🍆🎂🍱🍲";
constexpr char32_t pageE4[] = U"😥😏😔😁😉😣😖😪😝😌😨😷😳😒😰😲😭😂😢☺😄😡😚😘👀👃👂👄🙏👋👏👌👎👐🙅🙆💑🙇🙌👫👯🏀🏈🎱🏊🚙🚚🚒🚑🚓🎢🚇🚄🎍💝🎎🎓🎒🎏🌂💒🌊🍧🎇🐚🎐🌀🌾🎃🎑"
                              U"🍃🎅🌅🌇🌃🌈";
constexpr char32_t pageE5[] = U"🏩🎨🎩🏬🏯🏰🎦🏭🗼";
constexpr char32_t pageE5People[] = U"👱👲👳👴👵👶👷👸🗽💂💃🐬🐦🐠🐤🐹🐛🐘🐨🐒🐑🐺🐮🐰🐍🐔🐗🐫🐸🅰🅱🆎🅾🐾™";

constexpr Page pages[] = {{0xE001, pageE0, std::size(pageE0) - 1},
                          {0xE101, pageE1, std::size(pageE1) - 1},
                          {0xE201, pageE2, std::size(pageE2) - 1},
                          {0xE301, pageE3, std::size(pageE3) - 1},
                          {0xE401, pageE4, std::size(pageE4) - 1},
                          {0xE501, pageE5, std::size(pageE5) - 1},
                          {0xE515, pageE5People, std::size(pageE5People) - 1}};

constexpr char32_t firstFlag = 0xE50B;
constexpr char flags[] = "JPUSFRDEITGBESRUCNKR";

QString flagOf(char32_t privateUse)
{
    constexpr char32_t regionalA = 0x1F1E6;
    const std::size_t at = (privateUse - firstFlag) * 2;
    const char32_t letters[] = {regionalA + static_cast<char32_t>(flags[at] - 'A'),
                                regionalA + static_cast<char32_t>(flags[at + 1] - 'A')};
    return QString::fromUcs4(letters, 2);
}
} // namespace

QString modernEmojiOf(char32_t privateUse)
{
    if (privateUse >= firstFlag && privateUse - firstFlag < (std::size(flags) - 1) / 2)
        return flagOf(privateUse);
    for (const Page &page : pages) {
        if (privateUse < page.first || privateUse - page.first >= page.count)
            continue;
        const char32_t picture = page.pictures[privateUse - page.first];
        const QString text = QString::fromUcs4(&picture, 1);
        return picture < 0x80 ? text + QStringLiteral("\uFE0F\u20E3") : text;
    }
    return {};
}
