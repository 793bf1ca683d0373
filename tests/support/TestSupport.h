// Small helpers shared by the tests: a scratch directory and stream capture.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>

inline std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void writeFile(const std::string& path, const std::string& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// A fresh directory under the system's temporary folder, removed with its content.
class ScratchDir {
public:
    ScratchDir()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "qetzflt-test-XXXXXX").string();
        if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
        path_ = pattern;
    }
    ~ScratchDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string file(const std::string& name) const { return (path_ / name).string(); }
    // Writes a file under the directory, making the folders on its way; returns its path.
    std::string write(const std::string& relative, const std::string& bytes) const
    {
        std::filesystem::create_directories((path_ / relative).parent_path());
        writeFile(file(relative), bytes);
        return file(relative);
    }

private:
    std::filesystem::path path_;
};

// Sends a standard stream into a string for the capture's lifetime.
class CaptureStream {
public:
    explicit CaptureStream(std::ostream& stream) : stream_(stream), saved_(stream.rdbuf(buffer_.rdbuf())) {}
    ~CaptureStream() { stream_.rdbuf(saved_); }
    CaptureStream(const CaptureStream&) = delete;
    CaptureStream& operator=(const CaptureStream&) = delete;
    std::string text() const { return buffer_.str(); }

private:
    std::ostream& stream_;
    std::ostringstream buffer_;
    std::streambuf* saved_;
};

// Sends the process's standard output file into a temporary file for the capture's
// lifetime: what reaches it through std::cout without the stream being pointed elsewhere.
class CaptureStandardOutputFile {
public:
    CaptureStandardOutputFile() : file_(std::tmpfile()), saved_(dup(1))
    {
        std::fflush(stdout);
        if (!file_ || saved_ < 0 || dup2(fileno(file_), 1) < 0) throw std::runtime_error("cannot capture fd 1");
    }
    ~CaptureStandardOutputFile()
    {
        restore();
        std::fclose(file_);
    }
    CaptureStandardOutputFile(const CaptureStandardOutputFile&) = delete;
    CaptureStandardOutputFile& operator=(const CaptureStandardOutputFile&) = delete;
    // Ends the capture and gives what it received.
    std::string text()
    {
        restore();
        std::string all;
        std::rewind(file_);
        char chunk[65536];
        for (size_t n; (n = std::fread(chunk, 1, sizeof chunk, file_)) > 0;) all.append(chunk, n);
        return all;
    }

private:
    void restore()
    {
        if (saved_ < 0) return;
        std::cout.flush();
        std::fflush(stdout);
        dup2(saved_, 1);
        close(saved_);
        saved_ = -1;
    }
    std::FILE* file_;
    int saved_;
};

// The shared folder of real databases made by other tools, or empty when it is absent.
inline std::string sharedDataDir()
{
    const char* env = std::getenv("QETZFLT_SHARED_DATA");
    std::filesystem::path dir = env ? env : QETZFLT_SOURCE_DIR "/../shared/data";
    return std::filesystem::is_directory(dir) ? dir.string() : std::string();
}
