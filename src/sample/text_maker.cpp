#include "sample/text_maker.h"

#include <QByteArrayView>

namespace sample {

namespace {

constexpr QByteArrayView words[] = {
    "apple",  "about", "again",     "bridge", "bring",  "café",   "call",    "cheese",  "cloud",  "coffee",
    "dinner", "early", "evening",   "fahren", "family", "first",  "garden",  "gestern", "grün",   "happy",
    "home",   "hour",  "ice",       "later",  "letter", "maybe",  "meeting", "morning", "Müller", "music",
    "need",   "night", "okay",      "paper",  "piano",  "please", "quiet",   "rain",    "río",    "river",
    "said",   "sorry", "station",   "street", "sunday", "thanks", "the",     "then",    "ticket", "tomorrow",
    "train",  "under", "very",      "wait",   "wann",   "water",  "we",      "weather", "when",   "window",
    "yellow", "yes",   "yesterday", "you",    "мир",    "привет", "東京",    "明日",    "سلام",   "שלום",
    "ok",     "so",    "and",       "a",      "it",     "is",     "not",
};

constexpr QByteArrayView endings[] = {".",  ".",         "!",  "?", "",     "",
                                      " 😀", " 👍🏽", " ✔", "…", " :-)", " ❤️"};

} // namespace

QByteArray makeText(SeededGenerator &chance)
{
    const int kind = chance.below(100);
    const int count = kind < 70   ? 1 + chance.below(12)
                      : kind < 97 ? 5 + chance.below(40)
                                  : 60 + chance.below(240);
    QByteArray text;
    text.reserve(count * 8);
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            text += chance.oneIn(60) ? '\n' : ' ';
        text += chance.pick(words);
    }
    text += chance.pick(endings);
    return text;
}

QByteArray makeTitle(SeededGenerator &chance)
{
    QByteArray title = chance.pick(words).toByteArray();
    for (int i = chance.below(3); i >= 0; --i)
        title += ' ' + chance.pick(words).toByteArray();
    return title;
}

} // namespace sample
