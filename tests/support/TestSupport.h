// Small helpers shared by the tests: a scratch directory, stream capture, the shared real
// databases and golden files.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

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

// How many times part stands in text.
inline size_t occurrences(const std::string& text, const std::string& part)
{
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
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

// A writable copy under dir of the shared folder of real databases, or of one folder in it,
// so that logs go beside the copies and references and textures resolve as in the original;
// empty when it is absent.
inline std::string copyOfSharedData(const ScratchDir& dir, const std::string& relative = "")
{
    namespace fs = std::filesystem;
    const std::string shared = sharedDataDir();
    const fs::path source = relative.empty() ? fs::path(shared) : fs::path(shared) / relative;
    if (shared.empty() || !fs::is_directory(source)) return "";
    const fs::path target = relative.empty() ? dir.path() : dir.path() / relative;
    fs::create_directories(target);
    fs::copy(source, target, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    for (const auto& entry : fs::recursive_directory_iterator(target))
        fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add);
    fs::permissions(target, fs::perms::owner_write, fs::perm_options::add);
    return target.string();
}

// The databases below a folder (its .flt files, the extension in any case), by their names
// relative to it, in order.
inline std::vector<std::string> databasesBelow(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::string extension = entry.path().extension().string();
        std::transform(extension.begin(), extension.end(), extension.begin(), ::tolower);
        if (entry.is_regular_file() && extension == ".flt")
            names.push_back(std::filesystem::relative(entry.path(), folder).generic_string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

// Compares a test's output with its golden copy; with QETZFLT_UPDATE_GOLDEN set, the copy is
// rewritten instead. A difference is shown where it begins.
inline void compareWithGolden(const std::string& actual, const std::string& golden)
{
    if (std::getenv("QETZFLT_UPDATE_GOLDEN")) {
        writeFile(golden, actual);
        GTEST_SKIP() << "rewrote " << golden;
    }
    const std::string expected = readFile(golden);
    ASSERT_FALSE(expected.empty()) << golden << " is missing";
    if (actual == expected) return;
    size_t at = 0;
    while (at < actual.size() && at < expected.size() && actual[at] == expected[at]) ++at;
    const size_t from = at > 200 ? at - 200 : 0;
    FAIL() << "differs from " << golden << " at byte " << at << "\nexpected: ..." << expected.substr(from, 300)
           << "\nactual:   ..." << actual.substr(from, 300);
}
