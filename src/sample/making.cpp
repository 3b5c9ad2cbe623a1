#include "sample/data_classes.h"

namespace sample {

FilePlace Making::place(const char *domain, const QString &relativePath, int daysBefore) const
{
    return {QLatin1String(domain), relativePath, generation.backupDate - 60 - daysBefore * 86400LL};
}

} // namespace sample
