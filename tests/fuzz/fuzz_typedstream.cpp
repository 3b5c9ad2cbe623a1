#include "fuzz_input.h"

#include "messages/typed_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView bytes = fuzzInput(data, size);
    const std::optional<QString> text = typedStreamText(bytes);
    if (!text)
        return 0;
    require(text->size() <= bytes.size(), "a text is no longer than its stream");
    require(typedStreamText(bytes.toByteArray() + "more") == text,
            "what follows the text does not change it");
    return 0;
}
