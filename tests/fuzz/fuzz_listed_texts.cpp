#include "fuzz_input.h"

#include "messages/listed_texts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView bytes = fuzzInput(data, size);
    const std::optional<QStringList> texts = listedTexts(bytes);
    if (!texts)
        return 0;
    // Objects of an archive may be referred to more than once, by references of a byte or more.
    require(texts->size() <= bytes.size(), "a list has no more texts than its bytes can refer to");
    require(listedTexts(bytes.toByteArray()) == texts, "reading again gives the same");
    return 0;
}
