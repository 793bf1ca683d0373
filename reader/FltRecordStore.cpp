// Ownership of the parsed records and the scan to the end of a subtree.
#include "reader/FltRecordStore.h"

#include "reader/FltOpcode.h"
#include "reader/FltRecord.h"
#include "reader/FltRecordControl.h"

void FltRecordStore::add(FltRecord* record, uint64_t offset, int opcode)
{
    if (!record) return;
    records_.back() = record;
    records_.push_back(nullptr);
    if (keepOffsets_) offsets_.push_back(offset);
    switch (opcode) {
    case FltOpcode::Group:
    case FltOpcode::Object:
    case FltOpcode::OldLod:
    case FltOpcode::Lod:
    case FltOpcode::DegreeOfFreedom:
    case FltOpcode::Switch:
    case FltOpcode::ClipRegion:
    case FltOpcode::Text:
    case FltOpcode::LongId: namingRecords_.push_back(size() - 1); break;
    case FltOpcode::Face:
        if (previousOpcodes_[1] == FltOpcode::Object && previousOpcodes_[0] == FltOpcode::PushLevel) ++objectsOfFaces_;
        break;
    default: break;
    }
    previousOpcodes_[1] = previousOpcodes_[0];
    previousOpcodes_[0] = opcode;
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
    const FltSharedLevelRecords shared = fltSharedLevelRecords();
    for (FltRecord* record : records_) {
        if (record && record != previous && !shared.holds(record)) delete record;
        previous = record;
    }
    records_.assign(1, nullptr);
    records_.shrink_to_fit();
    offsets_.clear();
    offsets_.shrink_to_fit();
    namingRecords_.clear();
    namingRecords_.shrink_to_fit();
    objectsOfFaces_ = 0;
    previousOpcodes_[0] = previousOpcodes_[1] = -1;
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
