// Sound record and sound palette: decoded for the log's dump only, the conversion builds
// no node from them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "reader/FltBytes.h"
#include "reader/FltRecord.h"

// Sound record, opcode 91, 88 bytes: a sound source placed in the hierarchy, referring to
// a sound palette entry by index.
class FltRecordSound : public PrimaryFltRecord {
public:
    explicit FltRecordSound(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 91; }
    const char* getHeading() const override { return "\n SOUND RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    int32_t reserved1 = 0;
    int32_t paletteIndex = 0;
    int32_t reserved2 = 0;
    double offsetX = 0, offsetY = 0, offsetZ = 0;
    float directionI = 0, directionJ = 0, directionK = 0;
    float amplitude = 0;
    float pitchBend = 0;
    float priority = 0;
    float falloff = 0;
    float width = 0;
    uint32_t flags = 0;  // doppler, absorption, delay (most significant bit first)
    int32_t reserved3 = 0;
};

// One sound of a sound palette header: where its file name starts in the packed names.
struct FltSoundEntry {
    int32_t index = 0;
    int32_t reserved = 0;
    int32_t fileNameOffset = 0;
};

// Sound palette record, opcode 93, variable length, in two subtypes that come as two
// records in a row. Subtype 1, the header: maxNumber at 8, actualNumber at 12, totalLength
// of the packed names at 16, then from 32 one 12-byte entry per sound (index, reserved,
// fileNameOffset). Subtype 2, the data: dataLength at 8 and the packed, NUL-separated file
// names from 12. The factory hands a sound palette that directly follows another to the
// same object (decodeFrom with the new bytes), so one object ends up holding both parts; each decode
// replaces only the part of its own subtype. The dump shows the part of the subtype
// decoded last. Counts and lengths from the file are trusted only as far as the record
// holds the bytes they announce.
class FltRecordSoundPalette : public PaletteFltRecord {
public:
    explicit FltRecordSoundPalette(unsigned int length) : PaletteFltRecord(length) {}
    ~FltRecordSoundPalette() override { delete[] packedData; }
    FltRecordSoundPalette(const FltRecordSoundPalette&) = delete;
    FltRecordSoundPalette& operator=(const FltRecordSoundPalette&) = delete;
    int getOpcode() const override { return 93; }
    const char* getHeading() const override { return "\n SOUND PALETTE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t subType = 0;

    // Subtype 1.
    int32_t maxNumber = 0;
    int32_t actualNumber = 0;  // as announced; soundEntries holds the entries present
    int32_t totalLength = 0;
    std::map<int32_t, FltSoundEntry> soundEntries;  // by sound index

    // Subtype 2.
    int32_t dataLength = 0;       // as announced
    char* packedData = nullptr;   // packedDataSize bytes and a closing NUL
    size_t packedDataSize = 0;    // the bytes of the names the record really holds
};
