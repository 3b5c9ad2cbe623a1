#include "fuzz_input.h"

#include "backup/archived_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView bytes = fuzzInput(data, size);
    FileRecord untouched;
    untouched.domain = "domain";
    FileRecord quick = untouched;
    FileRecord general = untouched;
    const bool quickRead = ArchivedRecordReader().read(bytes, quick);
    const bool generalRead = ArchivedRecordReader::readGeneral(bytes, general);
    require(quickRead || quick == untouched, "a record that is not read stays as it was");
    require(quickRead || !generalRead, "what the general reader reads is read");
    require(!generalRead || quick == general, "both readers find the same");
    return 0;
}
