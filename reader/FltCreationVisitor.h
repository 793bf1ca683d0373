// The opcode factory: turns each raw record into its typed, decoded and dumped object.
#pragma once

#include <iosfwd>

#include "reader/FltRecord.h"

class FltRawData;

class FltCreationVisitor : public FltVersion {
public:
    virtual void visitFltRawData(FltRecord*& out, const FltRawData* raw) = 0;
    virtual ~FltCreationVisitor() = default;
    // True when the record just built is shorter than the layout its decoder reads.
    virtual bool wasLastRecordShort() const { return false; }
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

    bool wasLastRecordShort() const override { return lastRecordShort; }

    // Where dumps go; null switches the dump off.
    void setDumpStream(std::ostream* stream) { dumpStream = stream; }
    std::ostream* getDumpStream() const { return dumpStream; }

    // The record created just before: a sound palette directly after another one continues
    // it instead of making a new object.
    FltRecord* previousRecord = nullptr;

private:
    std::ostream* dumpStream;
    bool lastRecordShort = false;
};
