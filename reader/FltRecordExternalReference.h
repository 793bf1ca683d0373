// External reference and extension attribute records.
#pragma once

#include <cstddef>
#include <cstdint>

#include "reader/FltRecord.h"

// External reference record, opcode 63, 216 bytes: the path of another database to pull in,
// and which of its palettes the referencing file overrides.
class FltRecordExternalReference : public PrimaryFltRecord {
public:
    explicit FltRecordExternalReference(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 63; }
    const char* getHeading() const override { return "\n EXTERNAL REFERENCE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    // 200 bytes of path; the extra byte keeps a path that fills them all terminated.
    char asciiPath[201] = {};
    int32_t reserved1 = 0;
    int32_t flags = 0;
    // The low half of the 32-bit word at offset 212, i.e. the bytes at 214 and 215: kept on
    // purpose as the established reading; nothing consumes it.
    uint16_t reserved2 = 0;
};

// Extension attribute record, opcode 100, 24 bytes followed by the extension's own data,
// which is kept as an owned copy of the remaining length - 24 bytes (none when shorter).
class FltRecordExtensionAttribute : public AncillaryFltRecord {
public:
    explicit FltRecordExtensionAttribute(unsigned int length) : AncillaryFltRecord(length) {}
    ~FltRecordExtensionAttribute() override { delete[] data; }
    FltRecordExtensionAttribute(const FltRecordExtensionAttribute&) = delete;
    FltRecordExtensionAttribute& operator=(const FltRecordExtensionAttribute&) = delete;
    int getOpcode() const override { return 100; }
    const char* getHeading() const override { return "\n EXTENSION ATTRIBUTE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    char idSite[9] = {};
    uint8_t reserved = 0;
    uint8_t revision = 0;
    uint16_t recordCode = 0;
    size_t dataLength = 0;
    char* data = nullptr;  // dataLength bytes, null when there are none
};
