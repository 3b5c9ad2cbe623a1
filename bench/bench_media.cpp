#include "backup/extract.h"
#include "base/error.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "sample/sample_maker.h"

#include "bench_table.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace {
constexpr int files = 5000;
constexpr int fileSize = 430000; // all of them: 2 GiB
const QString password = QStringLiteral("bench");
const QByteArray domain = "AppDomain-com.example.bench";

QByteArray noise()
{
    QByteArray bytes(fileSize, Qt::Uninitialized);
    quint64 state = 1;
    for (char &byte : bytes) {
        state = state * 6364136223846793005 + 1442695040888963407;
        byte = static_cast<char>(state >> 56);
    }
    return bytes;
}

void makeBackup(const QString &folder, bool isEncrypted)
{
    SampleOptions options;
    options.folder = folder;
    options.messages = 0;
    options.files = 0;
    if (isEncrypted)
        options.password = password;
    const QByteArray content = noise();
    for (int i = 0; i < files; ++i)
        options.extraRows.push_back(
            {QString::fromLatin1(domain), QStringLiteral("Documents/%1/%2.dat").arg(i % 50).arg(i), content});
    makeSample(options);
}

void benchExport(const char *name, double limit, const QDir &scratch, bool isEncrypted)
{
    const QString folder =
        scratch.filePath(isEncrypted ? QStringLiteral("encrypted") : QStringLiteral("plain"));
    makeBackup(folder, isEncrypted);
    NoProgress nobody;
    BackupManifest backup(folder);
    backup.loadInfo();
    if (isEncrypted && !backup.openEncrypted(password))
        throw Error(QStringLiteral("The password of the bench is wrong."));
    backup.buildIndex(nobody);
    const QString original = scratch.filePath(QStringLiteral("original"));
    const QString copy = scratch.filePath(QStringLiteral("copy"));
    const QString exported = scratch.filePath(QStringLiteral("exported"));
    const auto node = backup.tree().find(QStringLiteral("Applications/com.example.bench/Documents"));
    if (extractNodes(backup, {node}, original, nobody).done != files)
        throw Error(QStringLiteral("Not every file was exported."));
    bench::compare(
        name, limit,
        [&] {
            extractNodes(backup, {node}, exported, nobody);
            QDir(exported).removeRecursively();
        },
        [&] {
            if (QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), original, copy}) != 0)
                throw Error(QStringLiteral("cp failed."));
            QDir(copy).removeRecursively();
        });
    QDir(original).removeRecursively();
    QDir(folder).removeRecursively();
}
} // namespace

/// Exporting many files against `cp -r` of the same. The folder is made below the one that the first argument
/// names, or below the folder for temporary files.
int main(int argc, char **argv)
{
    const QTemporaryDir scratch(QDir(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::tempPath())
                                    .filePath(QStringLiteral("bench-XXXXXX")));
    qputenv("HOME", scratch.filePath(QStringLiteral("home")).toLocal8Bit());
    const QCoreApplication application(argc, argv);
    initResources();
    try {
        benchExport("export 5,000 files, 2 GiB", 1.5, QDir(scratch.path()), false);
        benchExport("export 5,000 encrypted files, 2 GiB", 2, QDir(scratch.path()), true);
    } catch (const Error &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
