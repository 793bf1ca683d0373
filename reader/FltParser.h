// FltParser: cuts a database buffer into records, has each one built by the opcode
// factory, keeps them in file order in its record store and hands each one to the attached
// observers at once.
//
// The parse needs the first record to be a header. A record whose length is shorter than
// its 4-byte header, or runs past the end of the buffer, stops the parse with a level-3
// console message naming its opcode and byte offset; the records before it are kept.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <vector>

#include "reader/FltLogBudget.h"
#include "reader/FltObserver.h"
#include "reader/FltRecordStore.h"

class FltCreationVisitor;
class FltInput;
class FltRawData;
class FltRecord;

// Told how far a parse has come. The parser asks only when it passes the byte offset the
// hook last returned, so that its loop pays one integer compare per record.
class FltParseProgress {
public:
    virtual ~FltParseProgress() = default;
    // The parse stands at this byte offset of a buffer of size bytes; returns the offset at
    // which to be told next (UINT64_MAX for never).
    virtual uint64_t parsed(uint64_t offset, uint64_t size) = 0;
};

class FltParser : public FltRecordObservable {
public:
    FltParser();
    // The parser owns the input unless told otherwise (the converter lends its own).
    explicit FltParser(FltInput* input, bool ownsInput = true);
    ~FltParser() override;
    FltParser(const FltParser&) = delete;
    FltParser& operator=(const FltParser&) = delete;

    void attachFltObserver(FltRecordObserver* observer) override;
    void detachFltObserver(FltRecordObserver* observer) override;
    void notify(const FltRecord* record) override;

    void init();
    void setInput(FltInput* value) { input = value; }
    FltInput* getInput() const { return input; }
    void setDefaultFltCreationVisitor();
    void setFltCreationVisitor(FltCreationVisitor* visitor);
    void setAdditionalDirPath(const char* path);

    // Parses the whole input: 0 on success (also when damage stopped the parse early),
    // 1 when the input is not an OpenFlight database.
    int run();
    bool isAnOpenFlightInput(FltInput* candidate);
    // Whether bytes begin as a database does: a header record (opcode 1) of non-zero length.
    static bool isDatabaseStart(const char* bytes, uint64_t size);
    // Where the progress lines of a run go (standard output unless set); null for nowhere.
    void setProgressStream(std::ostream* stream) { progress = stream; }
    // Who is told how far the parse has come (null, the default, for nobody).
    void setParseProgress(FltParseProgress* hook) { parseProgress = hook; }
    // Where each record's dump goes (standard output unless set); null switches it off.
    void setDumpStream(std::ostream* stream);
    // Whether push and pop records padded past their 4 bytes draw a warning (by default yes).
    void setReportPaddedControlRecords(bool report);
    // Builds the record of the raw data found at this byte offset.
    void fltRecordsVectorBuild(FltRawData* raw, uint64_t offset = 0);
    uint64_t getNumberOfFltRawData() const { return rawDataCount; }
    bool isAllFltRecordsCreated() const { return allRecordsCreated; }
    std::ostream& showAllFltRecords(std::ostream& os) const;
    // The dump of one run stops, with a console message, once it passes bytesPerFileByte
    // bytes per byte of the file plus marginBytes (by default 64 and 64 MiB).
    void setLogLimit(uint64_t bytesPerFileByte, uint64_t marginBytes)
    {
        logBytesPerFileByte = bytesPerFileByte;
        logMarginBytes = marginBytes;
    }
    // Or the dump draws on a budget shared with other parses of one conversion.
    void shareLogBudget(std::shared_ptr<FltLogBudget> budget) { sharedLogBudget = std::move(budget); }

    // Every record created, in file order, owned here.
    FltRecordStore records;
    FltCreationVisitor* creationVisitor = nullptr;
    FltInput* input = nullptr;
    bool ownsInput = true;
    char* additionalDirPath = nullptr;
    bool allRecordsCreated = false;
    uint64_t rawDataCount = 0;
    std::vector<FltRecordObserver*> observers;

private:
    void reportShortRecord(unsigned opcode, uint64_t offset, unsigned length);
    static constexpr uint64_t kShortRecordsReported = 10;
    // Short records keep their types while the bytes they lack, all together, stay within
    // the file's size plus 1 MiB: a database of older, shorter layouts lacks far less than
    // it holds. Past that, every 4-byte record would still build a whole node (hundreds of
    // times its size), so the short records after that point become unknown records. Each
    // counts as lacking at least 64 bytes, since it builds a node whatever it lacks.
    static constexpr uint64_t kLeastMissingBytes = 64;
    static constexpr uint64_t kMissingBytesMargin = uint64_t(1) << 20;
    uint64_t logBytesPerFileByte = FltLogBudget::kBytesPerFileByte;
    uint64_t logMarginBytes = FltLogBudget::kMarginBytes;
    std::shared_ptr<FltLogBudget> sharedLogBudget;
    uint64_t shortRecords = 0;
    uint64_t missingBytes = 0;
    std::ostream* progress;
    FltParseProgress* parseProgress = nullptr;
};
