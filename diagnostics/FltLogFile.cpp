// The log file of a conversion and the route of standard output into it.
#include "diagnostics/FltLogFile.h"

#include <iostream>
#include <mutex>

namespace {

std::mutex& outputMutex()
{
    static std::mutex mutex;
    return mutex;
}

// What standard output is pointed at while a log holds it: the log's file, or, once the
// log has closed, the buffer standard output had before, for a thread that still writes
// through this one. Made once and never freed: another thread may hold it at any time.
class StandardOutputRoute : public std::streambuf {
public:
    static StandardOutputRoute& instance()
    {
        static StandardOutputRoute* route = new StandardOutputRoute;
        return *route;
    }
    std::streambuf* log = nullptr;       // guarded by outputMutex
    std::streambuf* original = nullptr;  // guarded by outputMutex

protected:
    int overflow(int c) override
    {
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        std::lock_guard<std::mutex> lock(outputMutex());
        std::streambuf* to = log ? log : original;
        return to ? to->sputc(traits_type::to_char_type(c)) : c;
    }
    std::streamsize xsputn(const char* s, std::streamsize n) override
    {
        std::lock_guard<std::mutex> lock(outputMutex());
        std::streambuf* to = log ? log : original;
        return to ? to->sputn(s, n) : n;
    }
    int sync() override
    {
        std::lock_guard<std::mutex> lock(outputMutex());
        std::streambuf* to = log ? log : original;
        return to ? to->pubsync() : 0;
    }
};

}  // namespace

int FltLogFile::LockedFile::overflow(int c)
{
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    std::lock_guard<std::mutex> lock(outputMutex());
    return file.sputc(traits_type::to_char_type(c));
}

std::streamsize FltLogFile::LockedFile::xsputn(const char* s, std::streamsize n)
{
    std::lock_guard<std::mutex> lock(outputMutex());
    return file.sputn(s, n);
}

int FltLogFile::LockedFile::sync()
{
    std::lock_guard<std::mutex> lock(outputMutex());
    return file.pubsync();
}

FltLogFile::FltLogFile(const std::string& path) : buffer_(new char[kBufferSize]), stream_(&locked_)
{
    locked_.file.pubsetbuf(buffer_.get(), kBufferSize);
    if (!locked_.file.open(path, std::ios::out | std::ios::trunc)) stream_.setstate(std::ios::failbit);
}

void FltLogFile::takeStandardOutput()
{
    if (tookStandardOutput_) return;
    StandardOutputRoute& route = StandardOutputRoute::instance();
    std::lock_guard<std::mutex> lock(outputMutex());
    route.original = std::cout.rdbuf(&route);
    route.log = &locked_.file;
    tookStandardOutput_ = true;
}

FltLogFile::~FltLogFile()
{
    if (tookStandardOutput_) {
        std::cout.flush();
        StandardOutputRoute& route = StandardOutputRoute::instance();
        std::lock_guard<std::mutex> lock(outputMutex());
        route.log = nullptr;
        // Standard output goes back to where it went before the conversion.
        std::cout.rdbuf(route.original);
    }
    std::lock_guard<std::mutex> lock(outputMutex());
    locked_.file.close();
}
