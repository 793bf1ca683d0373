// FltLogBudget: how much record dump one conversion may write, its nested conversions of
// referenced files included. Each file read adds its share once, however many names reach
// it, so a database that names one file under many spellings cannot multiply the log.
#pragma once

#include <cstdint>
#include <set>
#include <utility>

class FltLogBudget {
public:
    // No database written by the format's rules comes near this (about ten bytes of dump per
    // byte), while short records that dump whole tables could fill a disk.
    static constexpr uint64_t kBytesPerFileByte = 64;
    static constexpr uint64_t kMarginBytes = uint64_t(64) << 20;

    // bytesPerFileByte bytes of dump per byte of every file read, plus marginBytes; the
    // count starts at the dump's total when the budget is made.
    FltLogBudget(uint64_t bytesPerFileByte, uint64_t marginBytes, uint64_t dumpedBefore)
        : perFileByte_(bytesPerFileByte), allowed_(marginBytes), start_(dumpedBefore)
    {
    }

    // A file read for the conversion: its share counts once per identity (device and inode);
    // a file without one (bytes in memory) counts every time.
    void addFile(uint64_t size, std::pair<uint64_t, uint64_t> identity)
    {
        if (identity != std::pair<uint64_t, uint64_t>() && !files_.insert(identity).second) return;
        allowed_ += perFileByte_ * size;
    }
    // Whether the dump, now at dumpedNow bytes in all, has passed the budget.
    bool passed(uint64_t dumpedNow) const { return dumpedNow - start_ > allowed_; }
    uint64_t bytesPerFileByte() const { return perFileByte_; }
    // Once passed, nothing more is dumped, and only the first parse to pass it says so.
    bool exhausted = false;

private:
    uint64_t perFileByte_;
    uint64_t allowed_;
    uint64_t start_;
    std::set<std::pair<uint64_t, uint64_t>> files_;
};
