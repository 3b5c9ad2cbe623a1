#include "base/process_guard.h"

#include <windows.h>

// A user's folders are closed to other users there, whatever a program asks for.
void keepToOwner()
{
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
}

void hideMemory() {}

UsersFileMask::UsersFileMask() : m_before(0) {}

UsersFileMask::~UsersFileMask() = default;
