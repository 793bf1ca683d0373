// Finding texture images beside the databases that name them.
#include "convert/FltTextureFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace {

bool isRegularFile(const std::string& path)
{
    struct stat info;
    return !path.empty() && ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

std::string absolute(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(path, error);
    return error ? path : full.lexically_normal().string();
}

}  // namespace

std::string fltFindTexture(const std::string& databaseDirectory, const std::string& name)
{
    std::string written = name;
    std::replace(written.begin(), written.end(), '\\', '/');
    if (written.empty()) return std::string();
    const std::string asWritten = written[0] == '/' ? written : databaseDirectory + written;
    if (isRegularFile(asWritten)) return absolute(asWritten);
    const size_t slash = written.find_last_of('/');
    const std::string beside = databaseDirectory + (slash == std::string::npos ? written : written.substr(slash + 1));
    if (isRegularFile(beside)) return absolute(beside);
    return std::string();
}

namespace {

// The attribute file's words at 36, 40 and 44: the wrap of both directions (0 repeat,
// 1 clamp, 4 mirrored repeat), then of u and of v (3: as both directions).
FltTextureWrap wrapOf(int32_t value, FltTextureWrap both)
{
    switch (value) {
    case 0: return FltTextureWrap::Repeat;
    case 1: return FltTextureWrap::Clamp;
    case 4: return FltTextureWrap::MirroredRepeat;
    default: return both;
    }
}

}  // namespace

FltTextureWraps fltTextureWraps(const std::string& imagePath)
{
    FltTextureWraps wraps;
    const std::string path = imagePath + ".attr";
    if (!isRegularFile(path)) return wraps;
    // Not blocking on a file swapped for a pipe since the look.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return wraps;
    unsigned char bytes[48];
    size_t got = 0;
    for (ssize_t n; got < sizeof bytes && (n = ::read(fd, bytes + got, sizeof bytes - got)) > 0;) got += static_cast<size_t>(n);
    ::close(fd);
    if (got < sizeof bytes) return wraps;
    auto word = [&bytes](size_t at) {
        return static_cast<int32_t>((uint32_t(bytes[at]) << 24) | (uint32_t(bytes[at + 1]) << 16) |
                                    (uint32_t(bytes[at + 2]) << 8) | uint32_t(bytes[at + 3]));
    };
    const FltTextureWrap both = wrapOf(word(36), FltTextureWrap::Repeat);
    wraps.u = wrapOf(word(40), both);
    wraps.v = wrapOf(word(44), both);
    return wraps;
}
