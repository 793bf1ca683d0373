// FltLogFile: the log of one conversion, written through a large buffer, and the one place
// where the process's standard output is pointed at a log.
//
// A classic conversion sends standard output to its log while it runs, as the established
// converter did: whatever the host writes there meanwhile lands in the log too. Standard
// output is pointed at a stream buffer of the process's own, never freed, which passes
// writes to the log of the conversion running, or else where standard output went; every
// write into a log takes one process-wide lock. Found on the process's own buffer, that
// route stays: a thread writing to standard output while conversions come and go can
// neither crash nor tear a line, and standard output is never swapped under it. Found on a
// buffer the host pointed it at, standard output is given back to that buffer when the
// last logging conversion ends, and the route never forwards to it afterwards.
#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

class FltLogFile {
public:
    // Opens the file, emptied, as fltOpenOwnFile does. A file that is something else (a
    // link, a pipe, a folder...) is not touched: no log, and a level-2 message names it. A
    // file that merely cannot be written gives a stream that writes nothing, silently.
    explicit FltLogFile(const std::string& path);
    // Stops passing standard output here, if this log took it, and closes the file.
    ~FltLogFile();
    FltLogFile(const FltLogFile&) = delete;
    FltLogFile& operator=(const FltLogFile&) = delete;

    std::ostream& stream() { return stream_; }
    // Until this log closes, what is written to standard output goes into it.
    void takeStandardOutput();

    // The buffer of a log: the descriptor and a large area, every write under the lock.
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(int fd);
        ~Buffer() override;
        Buffer(const Buffer&) = delete;
        Buffer& operator=(const Buffer&) = delete;
        bool isOpen() const { return fd_ >= 0; }
        // With the lock held.
        void putLocked(const char* s, size_t n);
        bool flushLocked();
        void closeLocked();

    protected:
        int overflow(int c) override;
        std::streamsize xsputn(const char* s, std::streamsize n) override;
        int sync() override;

    private:
        int fd_;
        std::unique_ptr<char[]> area_;
        size_t used_ = 0;
        // Bytes written to the file, and how many of them the kernel was asked to write out.
        uint64_t written_ = 0, handedOver_ = 0;
    };

private:
    Buffer buffer_;
    std::ostream stream_;
    bool tookStandardOutput_ = false;
};
