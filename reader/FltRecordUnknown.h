// FltRecordUnknown: every opcode without a class of its own.
#pragma once

#include <string>

#include "reader/FltRecord.h"

// Keeps the opcode it was built with and a copy of the record's first length - 4 bytes,
// counted from the header (not from the body). Its category string is empty unless set.
class FltRecordUnknown : public AbstractFltRecord {
public:
    FltRecordUnknown(int opcode, unsigned int length) : AbstractFltRecord(length), opcode(opcode) {}
    ~FltRecordUnknown() override;
    FltRecordUnknown(const FltRecordUnknown&) = delete;
    FltRecordUnknown& operator=(const FltRecordUnknown&) = delete;

    int getOpcode() const override { return opcode; }
    std::string getRecordCategory() const override { return category; }
    FltCategory getCategoryKind() const override { return fltCategoryFromString(category); }
    const char* getCategoryName() const override { return category.c_str(); }
    virtual void setRecordCategory(const std::string& value) { category = value; }
    const char* getHeading() const override { return "\n UNKNOWN RECORD "; }
    void decode(const FltBytes& in) override;

    int opcode;
    char* data = nullptr;
    unsigned int dataSize = 0;
    std::string category;
};
