#include "fuzz_input.h"

#include "backup/mbdb_parser.h"
#include "base/error.h"

namespace {
QList<FileRecord> recordsOf(QByteArrayView bytes)
{
    QList<FileRecord> records;
    try {
        MBDBParser::readBytes(bytes, [&](FileRecord &&record) { records.append(std::move(record)); });
    } catch (const Error &) {
        // What came before the damage is kept.
    }
    return records;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView bytes = fuzzInput(data, size);
    const QList<FileRecord> records = recordsOf(bytes);
    require(recordsOf(MBDBParser::serialise(records)) == records, "what is written reads back the same");

    const QByteArray key(16, 'k');
    require(MBDBParser::decryptFileDesc(MBDBParser::encryptFileDesc(bytes, key), key) == bytes,
            "what is encrypted decrypts to the same");
    try {
        MBDBParser::decryptFileDesc(bytes, key);
    } catch (const Error &) {
        require(size % 16 != 0, "whole blocks decrypt to something");
    }
    return 0;
}
