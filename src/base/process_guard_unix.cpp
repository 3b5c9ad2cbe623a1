#include "base/process_guard.h"

#include <QtGlobal>

#include <sys/resource.h>
#include <sys/stat.h>

#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

namespace {
constexpr mode_t ownerOnly = 077;
mode_t chosenByUser = 0;
bool isKept = false;
} // namespace

void keepToOwner()
{
    chosenByUser = umask(ownerOnly);
    isKept = true;
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

void hideMemory()
{
#ifdef Q_OS_LINUX
    prctl(PR_SET_DUMPABLE, 0);
#endif
}

UsersFileMask::UsersFileMask() : m_before(umask(isKept ? chosenByUser : 0))
{
    if (!isKept)
        umask(static_cast<mode_t>(m_before));
}

UsersFileMask::~UsersFileMask()
{
    umask(static_cast<mode_t>(m_before));
}
