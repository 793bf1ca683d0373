// Finding texture images beside the databases that name them.
#include "convert/FltTextureFiles.h"

#include <sys/stat.h>

#include <algorithm>
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
