#pragma once

#include "support/dying_process.h"

#include <sqlite3.h>

/// When a process that deletes a file of a database dies; deleting the journal is what makes a transaction
/// last.
class DeathAtDeletion
{
public:
    enum Moment { Before, After };

    /// From now on every database of this process is opened with this; it dies at the n-th deletion.
    static void await(int deletion, Moment moment)
    {
        s_left = deletion;
        s_moment = moment;
        static sqlite3_vfs dying;
        dying = *sqlite3_vfs_find(nullptr);
        s_delete = dying.xDelete;
        dying.zName = "dying";
        dying.xDelete = remove;
        sqlite3_vfs_register(&dying, 1);
    }

private:
    static int remove(sqlite3_vfs *files, const char *name, int synchronised)
    {
        const bool dies = --s_left == 0;
        if (dies && s_moment == Before)
            std::raise(SIGKILL);
        const int result = s_delete(files, name, synchronised);
        if (dies)
            std::raise(SIGKILL);
        return result;
    }

    inline static int s_left = 0;
    inline static Moment s_moment = Before;
    inline static int (*s_delete)(sqlite3_vfs *, const char *, int) = nullptr;
};
