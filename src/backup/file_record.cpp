#include "backup/file_record.h"

#include <QByteArrayView>

#include <nettle/sha1.h>

QByteArray fileIdDigest(QByteArrayView domain, QByteArrayView relativePath)
{
    const auto update = [](sha1_ctx &context, QByteArrayView bytes) {
        sha1_update(&context, static_cast<std::size_t>(bytes.size()),
                    reinterpret_cast<const std::uint8_t *>(bytes.data()));
    };
    sha1_ctx context;
    sha1_init(&context);
    update(context, domain);
    update(context, "-");
    update(context, relativePath);
    QByteArray digest(SHA1_DIGEST_SIZE, Qt::Uninitialized);
    sha1_digest(&context, SHA1_DIGEST_SIZE, reinterpret_cast<std::uint8_t *>(digest.data()));
    return digest;
}

QByteArray fileId(QByteArrayView domain, QByteArrayView relativePath)
{
    return fileIdDigest(domain, relativePath).toHex();
}
