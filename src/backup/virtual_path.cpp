#include "backup/virtual_path.h"

#include <cstring>

namespace {
// What a person thinks of as the device's own disk.
constexpr QByteArrayView mergedDomains =
    "=domain=mediadomain=rootdomain=homedomain=systempreferencesdomain=mobiledevicedomain=wirelessdomain="
    "databasedomain=camerarolldomain=healthdomain=keychaindomain=keyboarddomain=managedpreferencesdomain=";
constexpr QByteArrayView application = "AppDomain";
} // namespace

QByteArray virtualPrefix(QByteArrayView domain)
{
    if (mergedDomains.contains('=' + domain.toByteArray().toLower() + '='))
        return {};
    const qsizetype dash = domain.indexOf('-');
    if (!domain.startsWith(application) || dash < 0 || dash + 1 == domain.size())
        return domain.toByteArray();
    const bool isApplication = dash == application.size();
    const QByteArray top = isApplication ? QByteArray("Applications") : domain.first(dash).toByteArray();
    return top + '/' + domain.sliced(dash + 1).toByteArray();
}

void VirtualPath::set(QByteArrayView prefix, QByteArrayView relativePath)
{
    const qsizetype between = prefix.isEmpty() || relativePath.isEmpty() ? 0 : 1;
    m_pathStart = prefix.size() + between;
    m_bytes.resize(m_pathStart + relativePath.size());
    if (!prefix.isEmpty())
        std::memcpy(m_bytes.data(), prefix.data(), static_cast<std::size_t>(prefix.size()));
    if (between)
        m_bytes[prefix.size()] = '/';
    if (!relativePath.isEmpty())
        std::memcpy(m_bytes.data() + m_pathStart, relativePath.data(),
                    static_cast<std::size_t>(relativePath.size()));
}
