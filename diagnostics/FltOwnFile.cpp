// Files a conversion may write.
#include "diagnostics/FltOwnFile.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string kindOf(const struct stat& info)
{
    if (S_ISLNK(info.st_mode)) return "a symbolic link";
    if (S_ISFIFO(info.st_mode)) return "a named pipe";
    if (S_ISDIR(info.st_mode)) return "a folder";
    if (S_ISSOCK(info.st_mode)) return "a socket";
    if (S_ISREG(info.st_mode)) return "a file with other names";
    return "a device";
}

}  // namespace

int fltOpenOwnFile(const std::string& path, bool append, std::string& refusal)
{
    refusal.clear();
    const int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | (append ? O_APPEND : 0);
    const int fd = ::open(path.c_str(), flags, 0666);
    struct stat info;
    if (fd < 0) {
        // Why not: something there that is no file of ours, or only a folder we cannot write.
        if (::lstat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) refusal = kindOf(info);
        return -1;
    }
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_nlink > 1) {
        // A hard link would let the log overwrite another file: the database itself, say.
        refusal = ::fstat(fd, &info) == 0 ? kindOf(info) : "unreadable";
        ::close(fd);
        return -1;
    }
    if (!append && ::ftruncate(fd, 0) != 0) {
        ::close(fd);
        return -1;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}
