// FltRecordUnknown: every opcode without a class of its own.
#pragma once

#include <memory>
#include <string>

#include "reader/FltRecord.h"

// Keeps the opcode it was built with and a copy of the record's first length - 4 bytes,
// counted from the header (not from the body). Its category string is empty unless set.
// A file may hold nothing but such records, so the object is kept small: no copy for a
// record of 4 bytes, and a category string only once one is set.
class FltRecordUnknown : public AbstractFltRecord {
public:
    FltRecordUnknown(int opcode, unsigned int length) : AbstractFltRecord(length), opcode(opcode) {}
    ~FltRecordUnknown() override;
    FltRecordUnknown(const FltRecordUnknown&) = delete;
    FltRecordUnknown& operator=(const FltRecordUnknown&) = delete;

    int getOpcode() const override { return opcode; }
    std::string getRecordCategory() const override { return category ? *category : std::string(); }
    FltCategory getCategoryKind() const override
    {
        return category ? fltCategoryFromString(*category) : FltCategory::Unknown;
    }
    const char* getCategoryName() const override { return category ? category->c_str() : ""; }
    virtual void setRecordCategory(const std::string& value) { category = std::make_unique<std::string>(value); }
    const char* getHeading() const override { return "\n UNKNOWN RECORD "; }
    void decode(const FltBytes& in) override;

    // The size of the copy: the record's length less 4 bytes.
    unsigned int getDataSize() const { return length >= 4 ? length - 4 : 0; }

    int opcode;
    char* data = nullptr;  // null when the copy is empty
    std::unique_ptr<std::string> category;
};
