// The record kept for every opcode without a class.
#include "reader/FltRecordUnknown.h"

#include "reader/FltBytes.h"

FltRecordUnknown::~FltRecordUnknown() { delete[] data; }

void FltRecordUnknown::decode(const FltBytes& in)
{
    delete[] data;
    data = nullptr;
    const unsigned int size = getDataSize();
    if (size == 0) return;
    data = new char[size];
    // The copy starts at the header, not at the body: kept as the established behaviour.
    in.chars(0, size, data);
}
