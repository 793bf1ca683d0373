// Loading libQetzFlt.so at run time and finding its entry points, as a host does: the three
// classic ones, and the qetzflt* ones that tell what the scene graph cannot (absent in an
// older library, then null).
#pragma once

#include <string>

class SoSeparator;

class QetzFltLibrary {
public:
    using ConvertFrom = SoSeparator* (*)(const char*);
    using NameFunction = const char* (*)();
    using FactFunction = void (*)(void* user, const char* key, const char* value);
    using InspectFunction = int (*)(const char*, FactFunction, void*);
    using PathFunction = int (*)(const char*);
    using CountFunction = int (*)();
    using MessageTextFunction = const char* (*)(int);
    using MessageLevelFunction = int (*)(int);

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
    InspectFunction inspect = nullptr;
    PathFunction writeStatistics = nullptr;
    CountFunction messageCount = nullptr;
    MessageTextFunction messageText = nullptr;
    MessageLevelFunction messageLevel = nullptr;

private:
    void* handle_ = nullptr;
    std::string error_;
    std::string path_;
};
