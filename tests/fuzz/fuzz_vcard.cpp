#include "fuzz_input.h"

#include "export/vcard_export.h"
#include "personal/vcard_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView bytes = fuzzInput(data, size);
    const VCardContacts cards = readVCards(bytes, {});
    for (const ContactRecord &contact : cards.contacts) {
        require(contact.rows.value(ContactDataKind::Name).size() == 1, "a contact has one name");
        qsizetype length = 0;
        for (const QList<ContactDataRow> &rows : contact.rows)
            for (const ContactDataRow &row : rows)
                length += row.data15.size();
        require(length <= bytes.size(), "pictures are no larger than their text");
        VCardExport::exportContact(contact);
    }
    for (const Issue &issue : cards.report.issues())
        require(issue.count > 0, "what is lost is counted");
    return 0;
}
