// The switch record: a named node whose children are turned on and off by bit masks.
#pragma once

#include <cstddef>
#include <cstdint>

#include "reader/FltRecord.h"

// Switch record, opcode 96, 28 bytes followed by numberOfMasks x numberOf32BitWordsPerMask
// mask words, mask after mask. The two counts are kept as the file states them; the words
// kept are only those the record really holds, so a record that claims more masks than it
// carries (or absurd counts) never makes the reader allocate or read beyond it.
class FltRecordSwitch : public PrimaryFltRecord {
public:
    explicit FltRecordSwitch(unsigned int length) : PrimaryFltRecord(length) {}
    ~FltRecordSwitch() override { delete[] masks; }
    FltRecordSwitch(const FltRecordSwitch&) = delete;
    FltRecordSwitch& operator=(const FltRecordSwitch&) = delete;
    int getOpcode() const override { return 96; }
    const char* getHeading() const override { return "\n SWITCH RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    int32_t spare = 0;
    int32_t indexOfCurrentMask = 0;
    int32_t numberOfMasks = 0;
    int32_t numberOf32BitWordsPerMask = 0;
    // The mask words in file order; maskWordCount of them, never more than the record holds.
    size_t maskWordCount = 0;
    uint32_t* masks = nullptr;
};
