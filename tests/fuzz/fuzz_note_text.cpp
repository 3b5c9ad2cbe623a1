#include "fuzz_input.h"

#include "personal/plain_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr qsizetype summaryLength = 100;
    const QString html = QString::fromUtf8(fuzzInput(data, size));
    const QString whole = plainTextOfHtml(html);
    const QString beginning = plainTextOfHtml(html, summaryLength);
    require(whole.size() <= html.size() * 2 + 16, "a text is not much longer than its markup");
    require(firstCharacters(whole, summaryLength) == firstCharacters(beginning, summaryLength),
            "a summary is the beginning of the text");
    return 0;
}
