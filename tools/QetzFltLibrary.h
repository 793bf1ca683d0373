// Loading libQetzFlt.so at run time and finding its three entry points, as a host does.
#pragma once

#include <string>

class SoSeparator;

class QetzFltLibrary {
public:
    using ConvertFrom = SoSeparator* (*)(const char*);
    using NameFunction = const char* (*)();

    // Looks for the library beside the executable, in ../lib, then on the library path
    // (QETZFLT_LIBRARY names a file to use instead).
    QetzFltLibrary();
    ~QetzFltLibrary();
    QetzFltLibrary(const QetzFltLibrary&) = delete;
    QetzFltLibrary& operator=(const QetzFltLibrary&) = delete;

    bool loaded() const { return convertFrom != nullptr; }
    const std::string& error() const { return error_; }
    const std::string& path() const { return path_; }

    ConvertFrom convertFrom = nullptr;
    NameFunction getProductName = nullptr;
    NameFunction getVersion = nullptr;

private:
    void* handle_ = nullptr;
    std::string error_;
    std::string path_;
};
