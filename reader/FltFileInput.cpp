// Reading a database file into one buffer.
#include "reader/FltFileInput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <new>
#include <string>

FltFileInput::FltFileInput(const char* path) : FltFileInput(path, &std::cout, &std::cerr) {}

std::string FltFileInput::nameOf(const char* path)
{
    std::string name = path ? path : "";
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

bool FltFileInput::canOpen(const char* path)
{
    const int fd = ::open(nameOf(path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return false;
    ::close(fd);
    return true;
}

FltFileInput::FltFileInput(const char* path, std::ostream* progress, std::ostream* errors)
{
    if (!path) path = "";
    size_t n = std::strlen(path);
    fileName = new char[n + 1];
    std::memcpy(fileName, path, n + 1);
    for (char* c = fileName; *c; ++c)
        if (*c == '\\') *c = '/';

    if (const char* slash = std::strrchr(fileName, '/')) {
        size_t prefix = static_cast<size_t>(slash - fileName) + 1;
        dirName = new char[prefix + 1];
        std::strncpy(dirName, fileName, prefix);
        dirName[prefix] = '\0';
    }

    inFlowCreated = false;
    buffer = nullptr;
    struct stat info;
    file = openRegular(fileName, errors, info);
    if (!file) return;
    identity = {static_cast<uint64_t>(info.st_dev), static_cast<uint64_t>(info.st_ino)};

    // In one write: it may go into a log that another thread writes to as well.
    if (progress) *progress << std::string("\nSuccess in opening file: ") + fileName + "\n";
    calculFileSize();
    buffer = new (std::nothrow) char[size ? size : 1];
    if (!buffer) {
        if (errors) *errors << std::string("Error in reading file: ") + fileName + "\n";
        size = 0;
    } else {
        // A short read keeps only the bytes that arrived, so nothing uninitialised is parsed.
        size = fileToBuffer();
        inFlowCreated = true;
    }
    std::fclose(file);
    file = nullptr;
}

FILE* FltFileInput::openRegular(const char* name, std::ostream* errors, struct stat& info)
{
    // Opened without blocking, as a named pipe would wait for a writer. A directory, a pipe
    // or a device has no size to read; treat it as unopenable.
    FILE* opened = nullptr;
    const int fd = ::open64(name, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd >= 0) {
        const int flags = fcntl(fd, F_GETFL);
        if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && flags != -1 &&
            fcntl(fd, F_SETFL, flags & ~O_NONBLOCK) == 0)
            opened = fdopen(fd, "rb");
        if (!opened) ::close(fd);
    }
    if (!opened && errors) *errors << std::string("Error in opening file: ") + name + "\n";
    return opened;
}

bool FltFileInput::announce(const char* path, std::ostream* progress, std::ostream* errors)
{
    const std::string name = nameOf(path);
    struct stat info;
    FILE* opened = openRegular(name.c_str(), errors, info);
    if (!opened) return false;
    if (progress) *progress << std::string("\nSuccess in opening file: ") + name + "\n";
    std::fclose(opened);
    return true;
}

FltFileInput::~FltFileInput()
{
    delete[] fileName;
    delete[] dirName;
    delete[] buffer;
}

void FltFileInput::releaseBytes()
{
    delete[] buffer;
    buffer = nullptr;
}

void FltFileInput::calculFileSize()
{
    size = 0;
    if (fseeko64(file, 0, SEEK_END) == 0) {
        off64_t end = ftello64(file);
        if (end > 0) size = static_cast<uint64_t>(end);
    }
    std::rewind(file);
}

uint64_t FltFileInput::fileToBuffer()
{
    if (!size) return 0;
    return std::fread(buffer, 1, size, file);
}

void FltFileInput::showBuffer() const
{
    if (!buffer) return;
    for (uint64_t i = 0; i < size; ++i)
        std::cout << static_cast<unsigned>(static_cast<unsigned char>(buffer[i])) << " ";
}
