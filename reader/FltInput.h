// FltInput: the abstract source of one database's bytes, file name and directory name.
// The parser never touches the file system; it reads a database through this interface.
#pragma once

#include <cstdint>
#include <utility>

class FltInput {
public:
    virtual char* getBuffer() = 0;
    virtual uint64_t getSize() const = 0;
    virtual bool isInFlowCreated() const = 0;
    virtual const char* getFileName() const = 0;
    virtual const char* getDirName() const = 0;
    // What tells this file from others under any name (device and inode); zeros when the
    // bytes have no file.
    virtual std::pair<uint64_t, uint64_t> getIdentity() const { return {}; }
    // Gives the bytes back early when nothing will read them again (getBuffer is null after
    // it); the size, the names and the identity stay. Inputs that do not own their bytes
    // keep them.
    virtual void releaseBytes() {}
    // Added so that deleting through this interface frees the whole input.
    virtual ~FltInput() = default;
};
