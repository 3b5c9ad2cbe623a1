#include "base/secret.h"

namespace {
template <typename Text> void wipeText(Text &text)
{
    if (text.isDetached())
        wipe(text.data(), static_cast<std::size_t>(text.size()) * sizeof(*text.constData()));
    text = Text();
}
} // namespace

void wipe(void *bytes, std::size_t size)
{
    volatile char *each = static_cast<char *>(bytes);
    for (std::size_t i = 0; i < size; ++i)
        each[i] = 0;
}

void wipe(QByteArray &bytes)
{
    wipeText(bytes);
}

void wipe(QString &text)
{
    wipeText(text);
}
