// FltRecordStore: the records of one parse in file order, and their one owner.
//
// The parser adds each record as it is created; the store frees them all when it is
// cleared or destroyed. A sound palette that continues the one before it is the same
// object handed out again, so it stands twice, side by side, and is freed once. The shared
// push and pop records (see fltSharedLevelRecord) stand many times and are never freed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class FltRecord;

// A position in a record array that ends with a null entry: every walk stops there.
using FltRecordIterator = std::vector<FltRecord*>::iterator;

class FltRecordStore {
public:
    using const_iterator = std::vector<FltRecord*>::const_iterator;

    FltRecordStore() : records_(1, nullptr) {}
    ~FltRecordStore() { clear(); }
    FltRecordStore(const FltRecordStore&) = delete;
    FltRecordStore& operator=(const FltRecordStore&) = delete;

    // Adds a record that starts at this byte offset of the file; with the opcode of its
    // header, the record is counted in the census below as well.
    void add(FltRecord* record, uint64_t offset = 0, int opcode = -1);
    // What the converter prepares before its walk, counted as the parse adds the records (so
    // that no pass over all of them is needed): where the records whose ids name nodes stand
    // (groups, objects, levels of detail, degrees of freedom, switches, clip regions, texts,
    // long ids), and how many objects begin with a face (an object, a push level, a face).
    const std::vector<size_t>& namingRecords() const { return namingRecords_; }
    size_t objectsOfFaces() const { return objectsOfFaces_; }
    // Whether the store keeps each record's byte offset (8 bytes a record; off by default).
    void keepOffsets(bool keep) { keepOffsets_ = keep; }
    // Room for this many more records, so that a parse fills the array without moving it.
    void reserve(size_t more);
    // Frees every record.
    void clear();

    size_t size() const { return records_.size() - 1; }
    bool empty() const { return records_.size() == 1; }
    FltRecord* operator[](size_t i) const { return records_[i]; }
    // The record at i, or null past the last one.
    FltRecord* at(size_t i) const { return i < size() ? records_[i] : nullptr; }
    FltRecord* front() const { return records_.front(); }
    FltRecord* back() const { return empty() ? nullptr : records_[size() - 1]; }
    const_iterator begin() const { return records_.begin(); }
    const_iterator end() const { return records_.end() - 1; }

    // The first record of a walk over the array and its null end marker.
    FltRecordIterator walk() { return records_.begin(); }
    // The byte offset in the file of the record a walk stands on (0 on the end marker, or
    // when offsets are not kept).
    uint64_t offsetAt(FltRecordIterator it) const
    {
        const size_t i = static_cast<size_t>(it - records_.begin());
        return i < offsets_.size() ? offsets_[i] : 0;
    }

private:
    std::vector<FltRecord*> records_;  // the records, then the null end marker
    std::vector<uint64_t> offsets_;    // where each record starts in the file, when kept
    bool keepOffsets_ = false;
    std::vector<size_t> namingRecords_;
    size_t objectsOfFaces_ = 0;
    int previousOpcodes_[2] = {-1, -1};  // of the last record added, and of the one before
};

// Moves a walk one record on, never past the end marker.
inline void fltAdvance(FltRecordIterator& it)
{
    if (*it) ++it;
}

// Where the subtree that starts at `begin` ends: on the pop level that closes its first push
// level, or on the end marker when none does.
FltRecordIterator fltSubtreeEnd(FltRecordIterator begin);
