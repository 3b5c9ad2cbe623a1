#include "fuzz_input.h"

#include "backup/cf_type.h"

#include <algorithm>

namespace {
constexpr qsizetype itemsLookedAt = 64;
constexpr int depthLookedAt = 12;

/// Uses every reader on a value and what it contains.
void lookAt(const CFType &value, int depth)
{
    value.toInt16();
    value.toInt32();
    value.toInt64();
    value.toDouble();
    value.toBool();
    value.toString();
    value.toByteArray();
    value.toDateTime();
    value.toText();
    value.uid();
    if (depth == 0)
        return;
    const QStringList keys = value.keys();
    for (qsizetype i = 0; i < std::min(keys.size(), itemsLookedAt); ++i)
        lookAt(value.get(keys[i]), depth - 1);
    for (qsizetype i = 0; i < std::min(value.count(), itemsLookedAt); ++i)
        lookAt(value.at(i), depth - 1);
}

/// What a backup's description is read from.
void readDescription(const CFType &manifest)
{
    const CFType lockdown = manifest.get(QStringLiteral("Lockdown"));
    for (const char *key : {"DeviceName", "ProductType", "ProductVersion", "SerialNumber"})
        lockdown.get(QLatin1String(key)).toText();
    manifest.get(QStringLiteral("IsEncrypted")).toBool();
    manifest.get(QStringLiteral("Date")).toDateTime();
    manifest.get(QStringLiteral("BackupKeyBag")).toByteArray();
    manifest.get(QStringLiteral("ManifestKey")).toByteArray();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const CFType value = CFType::parse(fuzzInput(data, size));
    lookAt(value, depthLookedAt);
    readDescription(value);
    const CFType binary = CFType::parse(value.serialise(CFType::Format::Binary));
    require(binary.isEmpty() || binary.count() == value.count(), "what is written has as many items");
    lookAt(binary, 2);
    lookAt(CFType::parse(value.serialise(CFType::Format::Xml)), 2);
    CFType holder = CFType::newDictionary();
    holder.set(QStringLiteral("value"), value);
    const CFType held = holder.get(QStringLiteral("value"));
    holder.set(QStringLiteral("value"), CFType::fromInt(1));
    require(held.kind() == value.kind(), "a value outlives its place");
    return 0;
}
