// The record model: the root of every record class, the four categories, the revision mixin.
//
// Every record of an OpenFlight database becomes one object below FltRecord, chosen by its
// opcode (see Flt_15_7_CreationVisitor). An object knows its opcode, length and category,
// decodes its fields from the record's bytes and prints itself as a labelled dump.
// Decoded fields are public members named after their dump labels; the converter reads
// them directly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <typeinfo>

class FltBytes;
class FltDump;

// The category of a record, as the converter's walk dispatches on it.
enum class FltCategory { Primary, Ancillary, Control, Palette, Unknown };

class FltRecord {
public:
    virtual int getOpcode() const = 0;
    virtual std::string getRecordCategory() const = 0;
    virtual unsigned int getLength() const = 0;
    virtual std::ostream& nameOpcodeAndLength(std::ostream& os) const = 0;
    virtual std::ostream& properties(std::ostream& os) const = 0;
    // Decodes the fields from the record's bytes; data points at the opcode, and holds
    // getLength() bytes.
    virtual void getPropertiesFromData(char* data) = 0;
    virtual ~FltRecord() = default;

    // The category without building its string, for the converter's walk and the dump.
    virtual FltCategory getCategoryKind() const = 0;
    virtual const char* getCategoryName() const = 0;
};

// Holds the length and implements the shared dump and decode mechanics. A concrete class
// names its heading, decodes through decode() and prints its fields through dumpFields().
class AbstractFltRecord : public FltRecord {
public:
    explicit AbstractFltRecord(unsigned int length) : length(length) {}
    ~AbstractFltRecord() override { length = 0; }

    // Records are created and freed in great numbers; see FltRecordAllocator.h.
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size) noexcept;

    unsigned int getLength() const override { return length; }
    std::ostream& nameOpcodeAndLength(std::ostream& os) const override;
    std::ostream& properties(std::ostream& os) const override;
    void getPropertiesFromData(char* data) override;
    // Decodes from size bytes at data; returns how many bytes the layout read past them
    // (those fields read as zero), 0 when the record holds all it reads.
    size_t decodeFrom(const char* data, size_t size);
    // "  (" category ")" and the opcode and length line.
    virtual std::ostream& opcodeAndLength(std::ostream& os) const;

    // The dump heading, such as "\n GROUP RECORD ".
    virtual const char* getHeading() const = 0;
    // Decodes from a bounds-checked view of exactly the record's bytes.
    virtual void decode(const FltBytes& in);
    // Writes the field lines that follow the heading block.
    virtual void dumpFields(FltDump& out) const;

    unsigned int length;

protected:
    void writeHeadingBlock(FltDump& out) const;
};

class PrimaryFltRecord : public AbstractFltRecord {
public:
    using AbstractFltRecord::AbstractFltRecord;
    ~PrimaryFltRecord() override { length = 0; }
    std::string getRecordCategory() const override { return "PRIMARY_RECORD"; }
    FltCategory getCategoryKind() const override { return FltCategory::Primary; }
    const char* getCategoryName() const override { return "PRIMARY_RECORD"; }
};

class AncillaryFltRecord : public AbstractFltRecord {
public:
    using AbstractFltRecord::AbstractFltRecord;
    ~AncillaryFltRecord() override { length = 0; }
    std::string getRecordCategory() const override { return "ANCILLARY_RECORD"; }
    FltCategory getCategoryKind() const override { return FltCategory::Ancillary; }
    const char* getCategoryName() const override { return "ANCILLARY_RECORD"; }
};

class ControlFltRecord : public AbstractFltRecord {
public:
    using AbstractFltRecord::AbstractFltRecord;
    ~ControlFltRecord() override { length = 0; }
    std::string getRecordCategory() const override { return "CONTROL_RECORD"; }
    FltCategory getCategoryKind() const override { return FltCategory::Control; }
    const char* getCategoryName() const override { return "CONTROL_RECORD"; }
};

class PaletteFltRecord : public AbstractFltRecord {
public:
    using AbstractFltRecord::AbstractFltRecord;
    ~PaletteFltRecord() override { length = 0; }
    std::string getRecordCategory() const override { return "PALETTE_RECORD"; }
    FltCategory getCategoryKind() const override { return FltCategory::Palette; }
    const char* getCategoryName() const override { return "PALETTE_RECORD"; }
};

// Carries the database's format revision (the header's formatRevisionLevel, 1570 for 15.7)
// and its packed-colour mode into the records whose layout depends on them.
class FltVersion {
public:
    int32_t formatRevision = 0;
    bool rgbMode = false;
};

// The record as a T: when it is exactly a T (the class the opcode table builds for the
// opcode a dispatch tested) by a type comparison, else as dynamic_cast finds it. Walks cast
// every record, and the exact case is the common one.
template <class T>
const T* fltRecordCast(const FltRecord* record)
{
    if (record && typeid(*record) == typeid(T)) return static_cast<const T*>(record);
    return dynamic_cast<const T*>(record);
}

// Maps a category string to its kind; any other text is Unknown.
FltCategory fltCategoryFromString(const std::string& category);
