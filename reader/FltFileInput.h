// FltFileInput: reads a named OpenFlight file completely into memory when constructed.
//
// The file name is kept with every backslash turned into a slash; the directory name is
// its prefix up to and including the last slash (null when there is none), the base
// against which external references are resolved.
#pragma once

#include <sys/stat.h>

#include <cstdio>
#include <iosfwd>
#include <string>

#include "reader/FltInput.h"

class FltFileInput : public FltInput {
public:
    // Reads the file, saying so on standard output ("Success in opening file: ") or, when it
    // cannot, on standard error.
    explicit FltFileInput(const char* path);
    // The same with those lines sent to the streams given; null for nowhere.
    FltFileInput(const char* path, std::ostream* progress, std::ostream* errors);
    ~FltFileInput() override;
    FltFileInput(const FltFileInput&) = delete;
    FltFileInput& operator=(const FltFileInput&) = delete;

    char* getBuffer() override { return buffer; }
    uint64_t getSize() const override { return size; }
    bool isInFlowCreated() const override { return inFlowCreated; }
    const char* getFileName() const override { return fileName; }
    const char* getDirName() const override { return dirName; }
    std::pair<uint64_t, uint64_t> getIdentity() const override { return identity; }
    void releaseBytes() override;
    virtual const char* getAdditionalDirName() const { return dirName; }

    // Debugging aid: every byte as an unsigned decimal followed by a blank, on one line.
    void showBuffer() const;

    // Whether the file at path (backslashes read as slashes) opens for reading, found out
    // without blocking: opening a named pipe would wait for a writer forever.
    static bool canOpen(const char* path);
    // The file name an input of path takes: backslashes read as slashes.
    static std::string nameOf(const char* path);
    // Opens the file at path and says so, on the streams given, as reading it would, but
    // reads nothing: for a file already read under that name. True when it opened.
    static bool announce(const char* path, std::ostream* progress, std::ostream* errors);

protected:
    // The file at name as a stream when it is a regular file that opens for reading, found
    // out without blocking; else null, with the error line written.
    static FILE* openRegular(const char* name, std::ostream* errors, struct stat& info);
    void calculFileSize();
    uint64_t fileToBuffer();

    bool inFlowCreated = false;
    char* buffer = nullptr;
    char* fileName = nullptr;
    char* dirName = nullptr;
    FILE* file = nullptr;
    uint64_t size = 0;
    std::pair<uint64_t, uint64_t> identity;
};
