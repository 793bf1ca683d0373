// Ownership of the parsed records and the scan to the end of a subtree.
#include "reader/FltRecordStore.h"

#include "reader/FltOpcode.h"
#include "reader/FltRecord.h"
#include "reader/FltRecordControl.h"

void FltRecordStore::add(FltRecord* record, uint64_t offset)
{
    if (!record) return;
    records_.back() = record;
    records_.push_back(nullptr);
    if (keepOffsets_) offsets_.push_back(offset);
}

void FltRecordStore::reserve(size_t more)
{
    records_.reserve(records_.size() + more);
    if (keepOffsets_) offsets_.reserve(offsets_.size() + more);
}

void FltRecordStore::clear()
{
    // A continued record stands next to itself: freed once. The shared level records are
    // nobody's.
    const FltRecord* previous = nullptr;
    for (FltRecord* record : records_) {
        if (record && record != previous && !fltIsSharedLevelRecord(record)) delete record;
        previous = record;
    }
    records_.assign(1, nullptr);
    records_.shrink_to_fit();
    offsets_.clear();
    offsets_.shrink_to_fit();
}

FltRecordIterator fltSubtreeEnd(FltRecordIterator it)
{
    int depth = 0;
    for (; *it; ++it) {
        const int opcode = (*it)->getOpcode();
        if (opcode == FltOpcode::PushLevel) {
            ++depth;
        } else if (opcode == FltOpcode::PopLevel) {
            if (depth == 1) return it;
            --depth;
        }
    }
    return it;
}
