// FltLogFile: the log of one conversion, written through a large buffer, and the one place
// where the process's standard output is pointed at a log.
//
// A classic conversion sends standard output to its log while it runs, as the established
// converter did: whatever the host writes there meanwhile lands in the log too. The stream
// buffer that standard output is pointed at is the process's own and is never freed, and
// every write into a log takes one process-wide lock, so that a thread writing to standard
// output while a conversion opens or closes its log can neither crash nor tear a line.
#pragma once

#include <fstream>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

class FltLogFile {
public:
    // Opens the file, emptied. A file that cannot be opened gives a stream that writes
    // nothing, without a message.
    explicit FltLogFile(const std::string& path);
    // Points standard output back where it was, if this log took it, and closes the file.
    ~FltLogFile();
    FltLogFile(const FltLogFile&) = delete;
    FltLogFile& operator=(const FltLogFile&) = delete;

    std::ostream& stream() { return stream_; }
    // Until this log closes, what is written to standard output goes into it.
    void takeStandardOutput();

private:
    // Forwards every write to the file under the process-wide lock.
    class LockedFile : public std::streambuf {
    public:
        std::filebuf file;

    protected:
        int overflow(int c) override;
        std::streamsize xsputn(const char* s, std::streamsize n) override;
        int sync() override;
    };

    // A log holds about ten bytes of text per byte of database.
    static constexpr std::streamsize kBufferSize = 1 << 20;
    std::unique_ptr<char[]> buffer_;
    LockedFile locked_;
    std::ostream stream_;
    bool tookStandardOutput_ = false;
};
