#include "backup/backup_manifest.h"
#include "backup/cf_type.h"
#include "base/error.h"
#include "sample/sample_maker.h"
#include "sqlite/sqlite3_db.h"

#include "bench_table.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <malloc.h>
#include <sqlite3.h>

namespace {
constexpr int rows = 200000;
constexpr double timeLimit = 5;
constexpr double memoryLimit = 3;
constexpr double megabyte = 1e6;

void writeBackup(const QTemporaryDir &folder)
{
    makeCatalogueOnly(folder.filePath(QStringLiteral("Manifest.db")), rows, 1);
    QFile manifest(folder.filePath(QStringLiteral("Manifest.plist")));
    if (!manifest.open(QIODevice::WriteOnly))
        throw Error(manifest.errorString());
    manifest.write(CFType::newDictionary().serialise(CFType::Format::Binary));
}

/// What any reader has to do at least: step through the rows and touch every column.
void touchRows(const QString &path)
{
    Sqlite3DB db;
    db.openThrow(path, SqliteOpen::Immutable);
    Sqlite3Cursor cursor = db.queryThrow(QStringLiteral("select * from Files"));
    std::int64_t touched = 0;
    while (cursor.moveNext()) {
        for (int column = 0; column < cursor.count(); ++column) {
            const void *value = sqlite3_column_type(cursor.statement(), column) == SQLITE_INTEGER
                                    ? nullptr
                                    : sqlite3_column_blob(cursor.statement(), column);
            touched += value ? sqlite3_column_bytes(cursor.statement(), column)
                             : sqlite3_column_int64(cursor.statement(), column);
        }
    }
    if (touched == 0)
        throw Error(QStringLiteral("The catalogue is empty."));
}

std::unique_ptr<BackupManifest> openBackup(const QString &folder)
{
    auto backup = std::make_unique<BackupManifest>(folder);
    NoProgress progress;
    backup->loadInfo();
    backup->buildIndex(progress);
    return backup;
}

/// The bytes that the heap has given out, large blocks included.
double allocatedBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks) + static_cast<double>(heap.hblkhd);
}

double textBytes(const FileCatalogue &catalogue)
{
    double bytes = 0;
    for (FileCatalogue::Index i = 0; i < catalogue.size(); ++i) {
        const FileRecord record = catalogue.record(i);
        bytes += static_cast<double>(record.domain.size() + record.relativePath.size() +
                                     record.digest.size() + record.encryptionKey.size());
    }
    return bytes;
}

void benchMemory(const QString &folder)
{
    std::vector<double> held;
    double texts = 0;
    for (int i = 0; i < bench::runs; ++i) {
        const double before = allocatedBytes();
        const auto backup = openBackup(folder);
        held.push_back((allocatedBytes() - before) / megabyte);
        texts = textBytes(backup->catalogue()) / megabyte;
    }
    bench::printRow("memory of that catalogue (MB on the heap)", bench::median(held), texts, memoryLimit);
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    try {
        writeBackup(folder);
        bench::compare(
            "open a catalogue of 200,000 files", timeLimit, [&] { openBackup(folder.path()); },
            [&] { touchRows(folder.filePath(QStringLiteral("Manifest.db"))); });
        benchMemory(folder.path());
    } catch (const Error &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
