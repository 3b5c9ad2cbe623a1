#include "fuzz_input.h"

#include "backup/cf_type.h"

// Everything that is tried is the inside of a property list in XML, which bytes made at random hardly ever begin.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" +
                                fuzzInput(data, size).toByteArray() + "</plist>";
    const CFType value = CFType::parse(document);
    const QByteArray written = value.serialise(CFType::Format::Xml);
    const CFType again = CFType::parse(written);
    require(value.isEmpty() || again.kind() == value.kind(), "what is written is read as what it was");
    require(value.isEmpty() || again.count() == value.count(), "with as many items");
    return 0;
}
