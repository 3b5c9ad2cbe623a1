#include "bench_table.h"

#include "backup/file_cipher.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdlib>

namespace {
constexpr qint64 contentSize = qint64{1024} * 1024 * 1024;

/// Numbers of a small generator: what is measured does not depend on the content, but must not be a hole.
void writeContent(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    QByteArray piece(1024 * 1024, Qt::Uninitialized);
    quint64 state = 1;
    for (qint64 done = 0; done < contentSize; done += piece.size()) {
        for (char &byte : piece) {
            state = state * 6364136223846793005 + 1442695040888963407;
            byte = static_cast<char>(state >> 56);
        }
        if (file.write(piece) != piece.size())
            std::abort();
    }
}
} // namespace

/// Decrypting a file of 1 GiB against `cp` of it into the same folder, the source in the page cache. The
/// folder is made below the one that the first argument names, or below the folder for temporary files.
int main(int argc, char **argv)
{
    const QTemporaryDir folder(QDir(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::tempPath())
                                   .filePath(QStringLiteral("bench-XXXXXX")));
    const QString plain = folder.filePath(QStringLiteral("plain"));
    const QString cipher = folder.filePath(QStringLiteral("cipher"));
    const QString decrypted = folder.filePath(QStringLiteral("decrypted"));
    const QString copy = folder.filePath(QStringLiteral("copy"));
    const QByteArray key(32, 'k');
    writeContent(plain);
    encryptFile(key, plain, cipher);
    QFile::remove(plain);
    bench::compare(
        "decrypt a file of 1 GiB", 1.6,
        [&] {
            decryptFile(key, cipher, decrypted);
            QFile::remove(decrypted);
        },
        [&] {
            if (QProcess::execute(QStringLiteral("cp"), {cipher, copy}) != 0)
                std::abort();
            QFile::remove(copy);
        });
}
