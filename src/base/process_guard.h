#pragma once

// What a program that handles somebody's private data says to the system about itself. One implementation a
// system.

/// Makes what this process creates its owner's alone, and has no image of its memory written when it dies.
/// Call first of all.
void keepToOwner();

/// Also keeps other programs of the same user, and crash reporters, from looking into this process. Not for a
/// program with a web view: the sandbox of the processes that draw pages cannot be set up then.
void hideMemory();

/// While one of these lives, files are created with the permissions that the user has chosen: for starting
/// programs that do not belong to this one.
class UsersFileMask
{
public:
    UsersFileMask();
    ~UsersFileMask();
    UsersFileMask(const UsersFileMask &) = delete;
    UsersFileMask &operator=(const UsersFileMask &) = delete;

private:
    unsigned m_before;
};
