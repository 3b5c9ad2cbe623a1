#include "fuzz_input.h"

#include "backup/keybag.h"
#include "base/error.h"

#include <QtEndian>

namespace {
/// A count of rounds that would take long is no finding.
bool isQuick(const Keybag &keybag, const char *tag)
{
    const QByteArray value = keybag.attributes().value(tag);
    return value.size() != 4 || qFromBigEndian<quint32>(value.constData()) < 16;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    try {
        Keybag keybag = Keybag::parse(fuzzInput(data, size));
        require(!keybag.classes().isEmpty(), "a keybag has classes");
        if (!isQuick(keybag, "ITER") || !isQuick(keybag, "DPIC"))
            return 0;
        const bool unlocked = keybag.unlock("secret");
        require(unlocked == keybag.isUnlocked(), "unlocking says what it did");
        const QByteArray wrapped = fuzzInput(data, size).first(qMin<qsizetype>(40, size)).toByteArray();
        for (const quint32 protectionClass : keybag.classes().keys()) {
            const QByteArray key = keybag.unwrapFileKey(protectionClass, wrapped);
            require(key.isEmpty() || key.size() == 32, "a file key has 32 bytes");
        }
        keybag.unwrapWithAnyClass(wrapped);
    } catch (const Error &) {
        // Damage is said, not survived silently.
    }
    return 0;
}
