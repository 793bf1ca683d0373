// Texture images as PNG, through Coin's image reader and libpng's simplified writer.
#include "convert/FltPngImage.h"

#include <Inventor/SbImage.h>
#include <Inventor/SbString.h>
#include <Inventor/SbVec2s.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// The components of an image (1 to 4) as libpng's simplified API names them.
png_uint_32 pngFormat(int components)
{
    switch (components) {
    case 1: return PNG_FORMAT_GRAY;  // which is 0
    case 2: return PNG_FORMAT_GA;
    case 3: return PNG_FORMAT_RGB;
    default: return PNG_FORMAT_RGBA;
    }
}

std::string systemReason(int error) { return std::strerror(error); }

// The process's file creation mask, read without changing it (umask() would, for a moment,
// for every thread): the "Umask:" line of /proc/self/status, else the usual 022.
mode_t processUmask()
{
    mode_t mask = 022;
    if (std::FILE* status = std::fopen("/proc/self/status", "re")) {
        char line[256];
        while (std::fgets(line, sizeof line, status))
            if (std::strncmp(line, "Umask:", 6) == 0) {
                mask = static_cast<mode_t>(std::strtoul(line + 6, nullptr, 8)) & 0777;
                break;
            }
        std::fclose(status);
    }
    return mask;
}

}  // namespace

bool fltEncodePng(const std::string& imagePath, std::vector<unsigned char>& png, int& width, int& height,
                  std::string& why)
{
    png.clear();
    width = height = 0;
    // Only regular files are opened: a named pipe or a device would block or never end.
    struct stat info {};
    if (imagePath.empty()) {
        why = "no image file named";
        return false;
    }
    if (::stat(imagePath.c_str(), &info) != 0) {
        why = systemReason(errno);
        return false;
    }
    if (!S_ISREG(info.st_mode)) {
        why = "not a regular file";
        return false;
    }
    SbImage image;
    if (!image.readFile(SbString(imagePath.c_str())) || !image.hasData()) {
        why = "not an image the image reader knows, or damaged";
        return false;
    }
    SbVec2s size;
    int components = 0;
    const unsigned char* pixels = image.getValue(size, components);
    if (!pixels || size[0] <= 0 || size[1] <= 0 || components < 1 || components > 4) {
        why = "the image reader gave no usable pixels (" + std::to_string(components) + " bytes a pixel)";
        return false;
    }

    png_image out;
    std::memset(&out, 0, sizeof out);
    out.version = PNG_IMAGE_VERSION;
    out.width = static_cast<png_uint_32>(size[0]);
    out.height = static_cast<png_uint_32>(size[1]);
    out.format = pngFormat(components);
    // The reader's rows run bottom up, PNG's top down: a negative stride flips them.
    const png_int_32 stride = -static_cast<png_int_32>(size[0]) * components;
    // Compressed for speed: a 1024 x 1024 photographic texture takes about 0.1 s, where the
    // default compression takes several times as long for a file a third smaller. One pass,
    // into a buffer of the largest size the image can take.
    out.flags = PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t bytes = PNG_IMAGE_PNG_SIZE_MAX(out);
    png.resize(bytes);
    if (!png_image_write_to_memory(&out, png.data(), &bytes, 0, pixels, stride, nullptr)) {
        why = std::string("PNG encoding failed: ") + out.message;
        png_image_free(&out);
        png.clear();
        return false;
    }
    png_image_free(&out);
    png.resize(bytes);
    width = size[0];
    height = size[1];
    return true;
}

bool fltWritePng(const std::string& imagePath, const std::string& pngPath, std::string& why)
{
    std::vector<unsigned char> png;
    int width = 0, height = 0;
    return fltEncodePng(imagePath, png, width, height, why) && fltWriteFileReplacing(pngPath, png, why);
}

bool fltWriteFileReplacing(const std::string& path, const std::vector<unsigned char>& bytes, std::string& why)
{
    if (path.empty()) {
        why = "no file named";
        return false;
    }
    // A temporary name beside the target, renamed over it once complete: a reader never
    // sees half a file, and a failed write leaves an earlier one as it was.
    std::string temporary = path + ".XXXXXX";
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0) {
        why = "cannot create " + temporary + ": " + systemReason(errno);
        return false;
    }
    size_t written = 0;
    int writeError = 0;
    while (written < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            writeError = n < 0 ? errno : EIO;
            break;
        }
        written += static_cast<size_t>(n);
    }
    // mkstemp makes the file private; it becomes as readable as any file the process makes.
    ::fchmod(fd, 0666 & ~processUmask());
    const int closeError = ::close(fd) == 0 ? 0 : errno;
    if (writeError || closeError) {
        why = "cannot write " + path + ": " + systemReason(writeError ? writeError : closeError);
        ::unlink(temporary.c_str());
        return false;
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        why = "cannot write " + path + ": " + systemReason(errno);
        ::unlink(temporary.c_str());
        return false;
    }
    return true;
}
