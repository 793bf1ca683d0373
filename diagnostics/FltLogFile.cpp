// The log file of a conversion and the route of standard output into it.
#include "diagnostics/FltLogFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <iostream>
#include <mutex>

#include "diagnostics/FltOwnFile.h"
#include "diagnostics/FltWarningMessageConsole.h"

namespace {

// A log holds about ten bytes of text per byte of database.
constexpr size_t kAreaSize = size_t(1) << 20;
constexpr uint64_t kHandOverBytes = uint64_t(32) << 20;

std::mutex& outputMutex()
{
    static std::mutex mutex;
    return mutex;
}

// The buffer standard output had when the library was loaded: the process's own, as a rule.
std::streambuf* const standardAtLoad = std::cout.rdbuf();

// What standard output is pointed at while a classic conversion with a log runs: the log of
// the conversion running, or else where standard output went. Made once and never freed:
// another thread may hold it at any time.
//
// Found on the buffer of the process, the route stays for good, so threads writing to
// standard output never see it swapped again. Found on a buffer of the host's own (a
// capture, a console), it is given back when the last logging conversion ends: the host
// may free that buffer afterwards, even after pointing standard output at the route again.
class StandardOutputRoute : public std::streambuf {
public:
    static StandardOutputRoute& instance()
    {
        static StandardOutputRoute* route = new StandardOutputRoute;
        return *route;
    }
    // All guarded by outputMutex.
    FltLogFile::Buffer* log = nullptr;
    std::streambuf* host = nullptr;  // the host's own buffer, while conversions hold it
    int taken = 0;                   // logging conversions that have not ended

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
        std::streambuf* to = fallbackLocked();
        return to ? to->sputn(s, n) : n;
    }
    int sync() override
    {
        std::lock_guard<std::mutex> lock(outputMutex());
        if (log) return log->flushLocked() ? 0 : -1;
        std::streambuf* to = fallbackLocked();
        return to ? to->pubsync() : 0;
    }

private:
    std::streambuf* fallbackLocked() const { return host ? host : standardAtLoad; }
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
    written_ += done;
    // A log of a gigabyte would otherwise sit in the page cache until the kernel's dirty
    // limits stall the conversion that writes it: every 32 MiB the kernel is asked to start
    // writing what came before, without waiting for it (10% off a 100 MiB database's
    // conversion, and the time per MiB no longer grows with the log).
    if (written_ - handedOver_ >= kHandOverBytes) {
        ::sync_file_range(fd_, static_cast<off_t>(handedOver_), static_cast<off_t>(written_ - handedOver_),
                          SYNC_FILE_RANGE_WRITE);
        handedOver_ = written_;
    }
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
    std::streambuf* current = std::cout.rdbuf();
    if (current != &route) {
        std::cout.rdbuf(&route);
        if (current != standardAtLoad) route.host = current;
    }
    ++route.taken;
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
    if (--route.taken == 0 && route.host) {
        if (std::cout.rdbuf() == &route) std::cout.rdbuf(route.host);
        route.host = nullptr;
    }
}
