#include "sample/catalogue_record.h"

#include <QCryptographicHash>

namespace sample {

QString CatalogueRecord::fileId() const
{
    const QByteArray place = domain.toUtf8() + '-' + relativePath.toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(place, QCryptographicHash::Sha1).toHex());
}

} // namespace sample
