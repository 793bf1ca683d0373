// FltRawData: one record as cut from the database buffer, on its way to the factory.
#pragma once

#include <cstdint>

class FltRawData {
public:
    FltRawData() = default;
    FltRawData(uint16_t opcode, uint16_t length, char* data) : opcode(opcode), length(length), data(data) {}
    // The bytes belong to the input buffer, which outlives every FltRawData; nothing is freed.
    virtual ~FltRawData() = default;

    uint16_t opcode = 0;
    uint16_t length = 0;  // the whole record, its 4-byte header included
    char* data = nullptr;  // the record's first header byte; length bytes are readable
};
