#include "base/error.h"

#include <QFileDevice>

#include <cerrno>

namespace {
// Qt keeps of the system's error nothing but its text.
ErrorKind kindOf(const QFileDevice &file)
{
    const QString reason = file.errorString();
    const auto is = [&reason](int code) { return reason == qt_error_string(code); };
    if (is(ENOSPC) || is(EDQUOT) || is(EFBIG))
        return ErrorKind::NoSpace;
    if (is(EACCES) || is(EPERM) || is(EROFS) || file.error() == QFileDevice::PermissionsError)
        return ErrorKind::Denied;
    return is(ENOENT) || is(ENOTDIR) ? ErrorKind::NotFound : ErrorKind::Other;
}
} // namespace

Error::Error(const QString &sentence, ErrorKind kind, FileAccess access)
    : std::runtime_error(sentence.toStdString()), m_kind(kind), m_access(access)
{
}

Error Error::ofFile(const QString &sentence, const QFileDevice &file, FileAccess access)
{
    return Error(sentence.arg(file.fileName(), file.errorString()), kindOf(file), access);
}

QString Error::sentence() const
{
    return QString::fromUtf8(what());
}

Error Error::withContext(const QString &context) const
{
    Error same(context + QStringLiteral(": ") + sentence(), m_kind, m_access);
    same.m_where = m_where;
    return same;
}

Error Error::at(const QString &where) const
{
    Error same(*this);
    same.m_where = where;
    return same;
}
