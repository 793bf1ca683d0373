// Cutting the database buffer into records.
#include "reader/FltParser.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltBytes.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltDump.h"
#include "reader/FltInput.h"
#include "reader/FltOpcode.h"
#include "reader/FltRawData.h"
#include "reader/FltRecordHeader.h"

namespace {
void reportDamage(const std::string& text) { FltWarningMessageConsole::notifyMessage(text, 3, true); }

// The records the parse will cut, up to the first damaged header: the record array is sized
// once (it grew by doubling, copying itself and zeroing twice its final size in pages).
// Every record is at least 4 bytes long, so the count never passes a quarter of the size.
uint64_t countRecords(const char* buffer, uint64_t size)
{
    uint64_t count = 0;
    for (uint64_t offset = 0; size - offset >= 4; ++count) {
        const uint16_t length = FltBytes(buffer + offset, 4).u16(2);
        if (length < 4 || length > size - offset) break;
        offset += length;
    }
    return count;
}
}  // namespace

FltParser::FltParser() : progress(&std::cout) { init(); }

FltParser::FltParser(FltInput* input, bool ownsInput) : input(input), ownsInput(ownsInput), progress(&std::cout)
{
    init();
}

FltParser::~FltParser()
{
    delete creationVisitor;
    if (ownsInput) delete input;
    std::free(additionalDirPath);
}

void FltParser::init()
{
    allRecordsCreated = false;
    setDefaultFltCreationVisitor();
    setAdditionalDirPath(".");
}

void FltParser::setDefaultFltCreationVisitor() { setFltCreationVisitor(new Flt_15_7_CreationVisitor()); }

void FltParser::setFltCreationVisitor(FltCreationVisitor* visitor)
{
    if (visitor == creationVisitor) return;
    delete creationVisitor;
    creationVisitor = visitor;
    // What it builds goes into the store, which knows the shared records.
    if (creationVisitor) creationVisitor->shareLevelRecords(true);
}

void FltParser::setAdditionalDirPath(const char* path)
{
    std::free(additionalDirPath);
    additionalDirPath = path ? strdup(path) : nullptr;
}

void FltParser::attachFltObserver(FltRecordObserver* observer) { observers.push_back(observer); }

void FltParser::detachFltObserver(FltRecordObserver* observer)
{
    auto it = std::find(observers.begin(), observers.end(), observer);
    if (it != observers.end()) observers.erase(it);
}

void FltParser::notify(const FltRecord* record)
{
    // By index: an observer may attach another one while being notified.
    for (size_t i = 0; i < observers.size(); ++i) observers[i]->update(record);
}

void FltParser::setDumpStream(std::ostream* stream)
{
    if (creationVisitor) creationVisitor->setDumpStream(stream);
}

void FltParser::setReportPaddedControlRecords(bool report)
{
    if (creationVisitor) creationVisitor->reportPaddedControlRecords(report);
}

bool FltParser::isDatabaseStart(const char* bytes, uint64_t size)
{
    if (!bytes) return false;
    FltBytes head(bytes, static_cast<size_t>(std::min<uint64_t>(size, 4)));
    return head.has(0, 4) && head.u16(0) == FltOpcode::Header && head.u16(2) != 0;
}

bool FltParser::isAnOpenFlightInput(FltInput* candidate)
{
    if (candidate && isDatabaseStart(candidate->getBuffer(), candidate->getSize())) return true;
    FltWarningMessageConsole::notifyMessage("ERROR! Not an Openflight Input !", 3, true);
    return false;
}

void FltParser::fltRecordsVectorBuild(FltRawData* raw, uint64_t offset)
{
    FltRecord* record = nullptr;
    creationVisitor->visitFltRawData(record, raw);
    if (!record) return;
    records.add(record, offset, raw->opcode);
    notify(record);
}

int FltParser::run()
{
    rawDataCount = 0;
    shortRecords = 0;
    missingBytes = 0;
    if (!isAnOpenFlightInput(input)) return 1;
    if (progress) *progress << "beginning of parsing\n";
    creationVisitor->beginParse();

    char* buffer = input->getBuffer();
    const uint64_t size = input->getSize();
    uint64_t offset = 0;
    bool complete = true;
    std::ostream* const dumpStream = creationVisitor->getDumpStream();
    const std::shared_ptr<FltLogBudget> budget =
        sharedLogBudget ? sharedLogBudget
                        : std::make_shared<FltLogBudget>(logBytesPerFileByte, logMarginBytes, FltDump::bytesWritten());
    budget->addFile(size, input->getIdentity());
    if (budget->exhausted) creationVisitor->setDumpStream(nullptr);
    const uint64_t missingBudget = size + kMissingBytesMargin;
    creationVisitor->keepShortRecordsAsUnknown(false);
    records.reserve(static_cast<size_t>(countRecords(buffer, size)));
    uint64_t nextProgress = parseProgress ? 0 : UINT64_MAX;
    while (offset < size) {
        if (offset >= nextProgress) nextProgress = parseProgress->parsed(offset, size);
        const uint64_t remaining = size - offset;
        if (remaining < 4) {
            reportDamage("ERROR ! " + std::to_string(remaining) + " bytes at byte offset " + std::to_string(offset) +
                         " are too few for a record header: parsing stopped");
            complete = false;
            break;
        }
        FltBytes header(buffer + offset, 4);
        const uint16_t opcode = header.u16(0);
        const uint16_t length = header.u16(2);
        if (length < 4) {
            reportDamage("ERROR ! Record of opcode " + std::to_string(opcode) + " at byte offset " +
                         std::to_string(offset) + " has length " + std::to_string(length) +
                         ", shorter than its 4-byte header: parsing stopped");
            complete = false;
            break;
        }
        if (length > remaining) {
            reportDamage("ERROR ! Record of opcode " + std::to_string(opcode) + " at byte offset " +
                         std::to_string(offset) + " has length " + std::to_string(length) + " but only " +
                         std::to_string(remaining) + " bytes remain in the file: parsing stopped");
            complete = false;
            break;
        }

        // Records decode straight from the input buffer, which outlives them and is never
        // modified: the view is bounded by the record's length, so no copy is needed.
        FltRawData raw(opcode, length, buffer + offset);
        fltRecordsVectorBuild(&raw, offset);
        if (creationVisitor->wasLastRecordShort()) {
            reportShortRecord(opcode, offset, length);
            const bool withinBudget = missingBytes <= missingBudget;
            missingBytes += std::max<uint64_t>(creationVisitor->lastRecordMissingBytes(), kLeastMissingBytes);
            if (withinBudget && missingBytes > missingBudget) {
                FltWarningMessageConsole::notifyMessage(
                    "WARNING ! The records shorter than their layout lack more bytes than the file's size plus 1 MiB "
                    "(each counted as lacking at least 64) at the record of opcode " +
                        std::to_string(opcode) + " at byte offset " + std::to_string(offset) +
                        ": the short records after it are kept as unknown records and not converted",
                    2, true);
                creationVisitor->keepShortRecordsAsUnknown(true);
            }
        }
        if (creationVisitor->getDumpStream() && budget->passed(FltDump::bytesWritten())) {
            FltWarningMessageConsole::notifyMessage(
                "WARNING ! The log has grown past " + std::to_string(budget->bytesPerFileByte()) +
                    " times the size of the files read at the record of opcode " + std::to_string(opcode) +
                    " at byte offset " + std::to_string(offset) + " of " + (input->getFileName() ? input->getFileName() : "") +
                    ": the records after it are not dumped",
                2, true);
            budget->exhausted = true;
            creationVisitor->setDumpStream(nullptr);
        }
        ++rawDataCount;
        if (rawDataCount == 1) {
            // The entry test makes the first record a header.
            if (auto* first = dynamic_cast<FltRecordHeader*>(records.back())) {
                creationVisitor->formatRevision = first->formatRevisionLevel;
                creationVisitor->rgbMode = first->isPackedColorMode();
                if (progress) {
                    // Each line in one write: another thread's lines may land in the same log.
                    *progress << "OpenFlight file version: " + std::to_string(creationVisitor->formatRevision) + "\n";
                    *progress << std::string("RGB mode: ") + (creationVisitor->rgbMode ? "true" : "false") + "\n";
                }
            }
        }
        offset += length;
    }
    if (shortRecords > kShortRecordsReported)
        FltWarningMessageConsole::notifyMessage(
            "WARNING ! " + std::to_string(shortRecords - kShortRecordsReported) +
                " more records were shorter than their layout (their missing fields read as zero)",
            2, true);
    creationVisitor->setDumpStream(dumpStream);
    creationVisitor->keepShortRecordsAsUnknown(false);
    if (progress) *progress << "end of parsing\n";
    allRecordsCreated = complete;
    return 0;
}

void FltParser::reportShortRecord(unsigned opcode, uint64_t offset, unsigned length)
{
    // The first few are named one by one, the rest counted in one line at the end.
    if (++shortRecords > kShortRecordsReported) return;
    FltWarningMessageConsole::notifyMessage("WARNING ! Record of opcode " + std::to_string(opcode) +
                                                " at byte offset " + std::to_string(offset) + " is " +
                                                std::to_string(length) +
                                                " bytes long, shorter than its layout: the fields past its end "
                                                "read as zero",
                                            2, true);
}

std::ostream& FltParser::showAllFltRecords(std::ostream& os) const
{
    for (const FltRecord* record : records)
        if (record) record->properties(os);
    return os;
}
