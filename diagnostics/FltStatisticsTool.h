// FltStatisticsTool: counts the records of a database by opcode, as they are shown to it, and
// writes the counts to a small text file next to it (the database's name followed by ".stat").
#pragma once

#include <cstdio>
#include <map>

class FltStatisticsTool {
public:
    FltStatisticsTool() = default;
    virtual ~FltStatisticsTool();
    FltStatisticsTool(const FltStatisticsTool&) = delete;
    FltStatisticsTool& operator=(const FltStatisticsTool&) = delete;

    // Counts one record of this opcode.
    void countRecord(int opcode) { ++counts[opcode]; }
    void setFltFile(const char* name);
    void setStatFile(const char* name);
    // Creates the statistics file empty.
    void makeEmptyFile();
    // True when the open output file holds nothing yet.
    bool isOutputFileEmpty();
    void writeFltStatisticsHeader();
    // Appends the header (to an empty file) and one line per opcode counted, ascending.
    void makeStatistics();
    // Whether the last makeStatistics could write the file.
    bool wasWritten() const { return written; }

    const std::map<int, int>& getCounts() const { return counts; }

private:
    std::map<int, int> counts;
    char* fltFileName = nullptr;
    char* statFileName = nullptr;
    FILE* output = nullptr;
    bool written = false;
};
