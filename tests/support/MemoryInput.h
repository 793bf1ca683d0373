// An in-memory database for parser tests, and ownership of the records a parse creates.
#pragma once

#include <set>
#include <string>
#include <vector>

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

private:
    std::string bytes_;
    bool created_;
};

// Frees the records a parser created (a continued record appears twice but is freed once).
inline void deleteRecords(std::vector<FltRecord*>& records)
{
    std::set<FltRecord*> unique(records.begin(), records.end());
    for (FltRecord* r : unique) delete r;
    records.clear();
}

// A parse of some bytes whose records are freed at the end of the test.
struct ParsedBytes {
    explicit ParsedBytes(const std::string& bytes) : input(bytes), parser(&input, false) {}
    ~ParsedBytes() { deleteRecords(parser.records); }
    MemoryInput input;
    FltParser parser;
};
