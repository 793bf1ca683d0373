// Group, object, comment, long identifier and replicate records: the records that shape
// the hierarchy and the small ancillary records that ride along with them.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Group record, opcode 2, 32 bytes (28 up to revision 1420). The word at offset 28 is read
// only from revision 1421 on.
class FltRecordGroup : public PrimaryFltRecord, public FltVersion {
public:
    explicit FltRecordGroup(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 2; }
    const char* getHeading() const override { return "\n GROUP RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    int16_t relativePriority = 0;
    int16_t spare = 0;
    uint32_t flags = 0;
    int16_t id1SpecialEffect = 0;
    int16_t id2SpecialEffect = 0;
    int16_t significance = 0;
    uint8_t layerCode = 0;
    uint8_t spare2 = 0;
    int32_t reserved = 0;  // from revision 1421; no label and no consumer
};

// Object record, opcode 4, 28 bytes. Its transparency (0 opaque to 65535 clear) reaches the
// face materials as it stands.
class FltRecordObject : public PrimaryFltRecord {
public:
    explicit FltRecordObject(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 4; }
    const char* getHeading() const override { return "\n OBJECT RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    int32_t flags = 0;
    int16_t relativePriority = 0;
    uint16_t transparency = 0;
    int16_t id1SpecialEffect = 0;
    int16_t id2SpecialEffect = 0;
    int16_t significance = 0;
    int16_t spare = 0;
};

// Comment record, opcode 31, variable length: the text from offset 4 to the record's end,
// owned and zero-terminated.
class FltRecordComment : public AncillaryFltRecord {
public:
    explicit FltRecordComment(unsigned int length) : AncillaryFltRecord(length) {}
    ~FltRecordComment() override { delete[] textDescription; }
    FltRecordComment(const FltRecordComment&) = delete;
    FltRecordComment& operator=(const FltRecordComment&) = delete;
    int getOpcode() const override { return 31; }
    const char* getHeading() const override { return "\n COMMENT RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;
    const char* getText() const { return textDescription ? textDescription : ""; }

    char* textDescription = nullptr;
};

// Long identifier record, opcode 33, variable length: the full name of the record before,
// decoded exactly as the comment record.
class FltRecordLongID : public AncillaryFltRecord {
public:
    explicit FltRecordLongID(unsigned int length) : AncillaryFltRecord(length) {}
    ~FltRecordLongID() override { delete[] idASCII; }
    FltRecordLongID(const FltRecordLongID&) = delete;
    FltRecordLongID& operator=(const FltRecordLongID&) = delete;
    int getOpcode() const override { return 33; }
    const char* getHeading() const override { return "\n LONG_ID RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;
    const char* getText() const { return idASCII ? idASCII : ""; }

    char* idASCII = nullptr;
};

// Replicate record, opcode 60, 8 bytes. The count is read as one 32-bit value at offset 4,
// so a file storing a 16-bit count followed by a 16-bit zero yields the count times 65536:
// kept on purpose, the replication receives that value.
class FltRecordReplicate : public AncillaryFltRecord {
public:
    explicit FltRecordReplicate(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 60; }
    const char* getHeading() const override { return "\n REPLICATE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t numberOfReplications = 0;
    int32_t reserved = 0;
};
