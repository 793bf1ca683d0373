// An in-memory database for parser tests.
#pragma once

#include <string>

#include "reader/FltInput.h"
#include "reader/FltParser.h"
#include "reader/FltRecord.h"

class MemoryInput : public FltInput {
public:
    explicit MemoryInput(std::string bytes, bool created = true) : bytes_(std::move(bytes)), created_(created) {}
    char* getBuffer() override { return bytes_.data(); }
    uint64_t getSize() const override { return bytes_.size(); }
    bool isInFlowCreated() const override { return created_; }
    const char* getFileName() const override { return "memory.flt"; }
    const char* getDirName() const override { return nullptr; }
    std::pair<uint64_t, uint64_t> getIdentity() const override { return identity; }
    std::pair<uint64_t, uint64_t> identity;  // none unless a test gives one

private:
    std::string bytes_;
    bool created_;
};

// A parse of some bytes; the parser frees its records.
struct ParsedBytes {
    explicit ParsedBytes(const std::string& bytes) : input(bytes), parser(&input, false) {}
    MemoryInput input;
    FltParser parser;
};
