#pragma once

#include "backup/file_record.h"

#include <QByteArrayView>

/// Reads the archived file record that a row of the newer catalogue carries (a binary property list with an
/// object graph reached through UIDs) straight from its bytes, without building a tree: a catalogue has a
/// million of them. Only the fields the archive holds are set; domain and path come from the row's own
/// columns.
class ArchivedRecordReader
{
public:
    /// False when the bytes are no such archive; `record` then keeps what it had. Missing keys give 0 or
    /// empty, values of another kind too. Never throws, never reads outside `archive`, is linear in its size.
    bool read(QByteArrayView archive, FileRecord &record);
    /// The same by way of a tree of values: for any property list, and a hundred times slower. read() falls
    /// back to it.
    static bool readGeneral(QByteArrayView archive, FileRecord &record);
};
