// Loaded into a program before its libraries (LD_PRELOAD), this sends it a signal at its n-th change of a file
// below given folders: a kill at a moment that is the same in every run. Without a number it only counts.
//
// KILL_POINT_PROGRAM  the short name of the program that is meant; others are left alone
// KILL_POINT_FOLDERS  absolute paths, one a line
// KILL_POINT_SIGNAL, KILL_POINT_NUMBER
// KILL_POINT_COUNT    a file that the number of changes is written to at the end

#include <array>
#include <atomic>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

namespace {
struct Settings
{
    pid_t process = 0; // 0 for a program that is not meant
    std::vector<std::string> folders;
    int signal = 0;
    long number = 0;
    std::string countFile;
};

Settings &settings()
{
    static Settings own;
    return own;
}

std::atomic<long> changes = 0;
std::array<std::atomic<bool>, 4096> isWatched; // by descriptor

template <typename Function> Function original(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool isMeant(const char *path)
{
    if (settings().process == 0 || settings().process != getpid())
        return false;
    for (const std::string &folder : settings().folders)
        if (std::strncmp(path, folder.c_str(), folder.size()) == 0)
            return true;
    return false;
}

void countChange()
{
    const int before = errno;
    if (++changes == settings().number)
        kill(getpid(), settings().signal);
    errno = before;
}

int watched(int descriptor, const char *path, int flags)
{
    if (descriptor < 0 || descriptor >= static_cast<int>(isWatched.size()))
        return descriptor;
    isWatched[descriptor] = (flags & (O_WRONLY | O_RDWR)) != 0 && isMeant(path);
    if (isWatched[descriptor] && (flags & O_CREAT))
        countChange();
    return descriptor;
}

std::string valueOf(const char *variable)
{
    const char *value = std::getenv(variable);
    return value ? value : "";
}

__attribute__((constructor)) void begin()
{
    const std::string program = valueOf("KILL_POINT_PROGRAM");
    unsetenv("LD_PRELOAD"); // the programs that this one starts are not meant
    if (program.empty() || program != program_invocation_short_name)
        return;
    Settings &own = settings();
    std::string folders = valueOf("KILL_POINT_FOLDERS") + '\n';
    for (std::size_t end = folders.find('\n'); end != std::string::npos; end = folders.find('\n')) {
        if (end > 0)
            own.folders.push_back(folders.substr(0, end) + '/');
        folders.erase(0, end + 1);
    }
    own.signal = std::atoi(valueOf("KILL_POINT_SIGNAL").c_str());
    own.number = std::atol(valueOf("KILL_POINT_NUMBER").c_str());
    own.countFile = valueOf("KILL_POINT_COUNT");
    own.process = getpid();
}

__attribute__((destructor)) void end()
{
    if (settings().process != getpid() || settings().countFile.empty())
        return;
    settings().process = 0;
    const int file = creat(settings().countFile.c_str(), 0600);
    const std::string count = std::to_string(changes);
    if (file >= 0 && write(file, count.data(), count.size()) > 0)
        close(file);
}
} // namespace

#define FORWARD_OPEN(name)                                                                                   \
    extern "C" int name(const char *path, int flags, ...)                                                    \
    {                                                                                                        \
        va_list rest;                                                                                        \
        va_start(rest, flags);                                                                               \
        const int mode = va_arg(rest, int);                                                                  \
        va_end(rest);                                                                                        \
        static const auto call = original<int (*)(const char *, int, ...)>(#name);                           \
        return watched(call(path, flags, mode), path, flags);                                                \
    }

FORWARD_OPEN(open)
FORWARD_OPEN(open64)

extern "C" ssize_t write(int descriptor, const void *bytes, size_t size)
{
    static const auto call = original<ssize_t (*)(int, const void *, size_t)>("write");
    const ssize_t written = call(descriptor, bytes, size);
    if (descriptor >= 0 && descriptor < static_cast<int>(isWatched.size()) && isWatched[descriptor])
        countChange();
    return written;
}

extern "C" ssize_t pwrite64(int descriptor, const void *bytes, size_t size, off64_t offset)
{
    static const auto call = original<ssize_t (*)(int, const void *, size_t, off64_t)>("pwrite64");
    const ssize_t written = call(descriptor, bytes, size, offset);
    if (descriptor >= 0 && descriptor < static_cast<int>(isWatched.size()) && isWatched[descriptor])
        countChange();
    return written;
}

extern "C" int close(int descriptor)
{
    static const auto call = original<int (*)(int)>("close");
    if (descriptor >= 0 && descriptor < static_cast<int>(isWatched.size()))
        isWatched[descriptor] = false;
    return call(descriptor);
}

extern "C" int rename(const char *from, const char *to) noexcept
{
    static const auto call = original<int (*)(const char *, const char *)>("rename");
    const int result = call(from, to);
    if (isMeant(to))
        countChange();
    return result;
}

extern "C" int unlink(const char *path) noexcept
{
    static const auto call = original<int (*)(const char *)>("unlink");
    if (isMeant(path))
        countChange();
    return call(path);
}
