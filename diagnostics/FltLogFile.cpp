// The log file of a conversion and the route of standard output into it.
#include "diagnostics/FltLogFile.h"

#include <unistd.h>

#include <cstring>
#include <iostream>
#include <mutex>

#include "diagnostics/FltOwnFile.h"
#include "diagnostics/FltWarningMessageConsole.h"

namespace {

// A log holds about ten bytes of text per byte of database.
constexpr size_t kAreaSize = size_t(1) << 20;

std::mutex& outputMutex()
{
    static std::mutex mutex;
    return mutex;
}

// What standard output is pointed at once a classic conversion with a log has run: the log
// of the conversion running, or else the buffer standard output had before. Made once and
// never freed: another thread may hold it at any time.
class StandardOutputRoute : public std::streambuf {
public:
    static StandardOutputRoute& instance()
    {
        static StandardOutputRoute* route = new StandardOutputRoute;
        return *route;
    }
    FltLogFile::Buffer* log = nullptr;   // guarded by outputMutex
    std::streambuf* original = nullptr;  // guarded by outputMutex

protected:
    int overflow(int c) override
    {
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        const char ch = traits_type::to_char_type(c);
        return xsputn(&ch, 1) == 1 ? c : traits_type::eof();
    }
    std::streamsize xsputn(const char* s, std::streamsize n) override
    {
        std::lock_guard<std::mutex> lock(outputMutex());
        if (log) {
            log->putLocked(s, static_cast<size_t>(n));
            return n;
        }
        return original ? original->sputn(s, n) : n;
    }
    int sync() override
    {
        std::lock_guard<std::mutex> lock(outputMutex());
        if (log) return log->flushLocked() ? 0 : -1;
        return original ? original->pubsync() : 0;
    }
};

}  // namespace

FltLogFile::Buffer::Buffer(int fd) : fd_(fd), area_(fd >= 0 ? new char[kAreaSize] : nullptr) {}

FltLogFile::Buffer::~Buffer()
{
    std::lock_guard<std::mutex> lock(outputMutex());
    closeLocked();
}

void FltLogFile::Buffer::putLocked(const char* s, size_t n)
{
    if (fd_ < 0) return;
    if (used_ + n > kAreaSize && !flushLocked()) return;
    if (n >= kAreaSize) {
        // Larger than the area: straight to the file.
        while (n > 0) {
            const ssize_t written = ::write(fd_, s, n);
            if (written <= 0) return;
            s += written;
            n -= static_cast<size_t>(written);
        }
        return;
    }
    std::memcpy(area_.get() + used_, s, n);
    used_ += n;
}

bool FltLogFile::Buffer::flushLocked()
{
    size_t done = 0;
    while (fd_ >= 0 && done < used_) {
        const ssize_t written = ::write(fd_, area_.get() + done, used_ - done);
        if (written <= 0) break;
        done += static_cast<size_t>(written);
    }
    const bool complete = done == used_;
    used_ = 0;
    return complete;
}

void FltLogFile::Buffer::closeLocked()
{
    if (fd_ < 0) return;
    flushLocked();
    ::close(fd_);
    fd_ = -1;
}

int FltLogFile::Buffer::overflow(int c)
{
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    const char ch = traits_type::to_char_type(c);
    std::lock_guard<std::mutex> lock(outputMutex());
    putLocked(&ch, 1);
    return c;
}

std::streamsize FltLogFile::Buffer::xsputn(const char* s, std::streamsize n)
{
    std::lock_guard<std::mutex> lock(outputMutex());
    putLocked(s, static_cast<size_t>(n));
    return n;
}

int FltLogFile::Buffer::sync()
{
    std::lock_guard<std::mutex> lock(outputMutex());
    return flushLocked() ? 0 : -1;
}

namespace {

int openLog(const std::string& path)
{
    std::string refusal;
    const int fd = fltOpenOwnFile(path, false, refusal);
    if (fd < 0 && !refusal.empty())
        FltWarningMessageConsole::notifyMessage(
            "WARNING ! The log file " + path + " is " + refusal + ": not written, the conversion goes on without a log",
            2, true);
    return fd;
}

}  // namespace

FltLogFile::FltLogFile(const std::string& path) : buffer_(openLog(path)), stream_(&buffer_)
{
    // Nothing is formatted for a log that cannot be written.
    if (!buffer_.isOpen()) stream_.setstate(std::ios::failbit);
}

void FltLogFile::takeStandardOutput()
{
    if (tookStandardOutput_) return;
    StandardOutputRoute& route = StandardOutputRoute::instance();
    std::lock_guard<std::mutex> lock(outputMutex());
    // Pointed once; only when the host has pointed standard output elsewhere since, again.
    if (std::cout.rdbuf() != &route) route.original = std::cout.rdbuf(&route);
    route.log = &buffer_;
    tookStandardOutput_ = true;
}

FltLogFile::~FltLogFile()
{
    if (!tookStandardOutput_) return;
    // Standard output goes back to where it went before the conversion.
    StandardOutputRoute& route = StandardOutputRoute::instance();
    std::lock_guard<std::mutex> lock(outputMutex());
    if (route.log == &buffer_) route.log = nullptr;
}
