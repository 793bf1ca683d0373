// The opcode factory: turns each raw record into its typed, decoded and dumped object.
#pragma once

#include <cstddef>
#include <iosfwd>

#include "reader/FltRecord.h"

class FltRawData;

class FltCreationVisitor : public FltVersion {
public:
    virtual void visitFltRawData(FltRecord*& out, const FltRawData* raw) = 0;
    virtual ~FltCreationVisitor() = default;
    // True when the record just built is shorter than the layout its decoder reads.
    virtual bool wasLastRecordShort() const { return lastRecordMissingBytes() > 0; }
    // How many bytes the record just built lacks of the layout its decoder reads.
    virtual size_t lastRecordMissingBytes() const { return 0; }
    // From now on, a record shorter than its layout is kept as an unknown record (its bytes,
    // no fields), which the conversion passes over.
    virtual void keepShortRecordsAsUnknown(bool) {}
    // A parse begins: nothing made before continues into it.
    virtual void beginParse() {}
    // Whether push and pop records longer than their 4 bytes draw a warning (they do by
    // default; one writer pads every record to a multiple of 8 bytes).
    virtual void reportPaddedControlRecords(bool) {}
    // Whether 4-byte push and pop level and subface records come out as the shared objects
    // of fltSharedLevelRecord, which the caller must not free (off by default: the caller
    // owns every record it is given).
    virtual void shareLevelRecords(bool) {}
    // Where each record's dump goes; null switches the dump off.
    virtual void setDumpStream(std::ostream*) {}
    virtual std::ostream* getDumpStream() const { return nullptr; }
};

// The factory of the OpenFlight 15.7 record set (opcodes 0 to 114). Every opcode yields
// an object: opcodes without a class, and every opcode above 114, yield FltRecordUnknown.
// Each record is dumped to the dump stream (standard output unless set) as it is created.
class Flt_15_7_CreationVisitor : public FltCreationVisitor {
public:
    Flt_15_7_CreationVisitor();
    void visitFltRawData(FltRecord*& out, const FltRawData* raw) override;

    // Creates the object an opcode names, without decoding it; null never.
    static AbstractFltRecord* createRecord(unsigned int opcode, unsigned int length, int revision);

    size_t lastRecordMissingBytes() const override { return lastRecordMissing; }
    void keepShortRecordsAsUnknown(bool value) override { shortAsUnknown = value; }
    void beginParse() override { previousRecord = nullptr; }
    void reportPaddedControlRecords(bool value) override { reportPadding = value; }
    void shareLevelRecords(bool value) override { shareLevels = value; }
    void setDumpStream(std::ostream* stream) override { dumpStream = stream; }
    std::ostream* getDumpStream() const override { return dumpStream; }

    // The record created just before: a sound palette directly after another one continues
    // it instead of making a new object.
    FltRecord* previousRecord = nullptr;

private:
    std::ostream* dumpStream;
    size_t lastRecordMissing = 0;
    bool shortAsUnknown = false;
    bool reportPadding = true;
    bool shareLevels = false;
};
