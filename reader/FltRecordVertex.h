// Vertex palette, vertex records (current and obsolete), vertex list and morph vertex list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "reader/FltRecord.h"

// Vertex palette record, opcode 67, 8 bytes: the length of the whole palette, this record
// and every vertex record after it.
class FltRecordVertexPalette : public PaletteFltRecord {
public:
    explicit FltRecordVertexPalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 67; }
    const char* getHeading() const override { return "\n VERTEX PALETTE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t vertexPaletteTotalLength = 0;
};

// Vertex with colour, opcode 68, 40 bytes; also the common part of the other three current
// kinds (69, 70, 71). The colour index is read from revision 1540 on (-1 before); the
// trailing word of the kinds with a normal only from revision 1580 on. One member set serves
// all four kinds; a field that a kind does not carry stays zero.
class FltRecordVertexColor : public PaletteFltRecord, public FltVersion {
public:
    explicit FltRecordVertexColor(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 68; }
    const char* getHeading() const override { return "\n VERTEX COLOR RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    bool isNoColor() const { return (flags & 0x2000u) != 0; }
    bool isPackedColor() const { return (flags & 0x1000u) != 0; }

    // The dump lines shared by the four kinds: the head (colour name index, flags,
    // coordinates) and the tail (packed colour, colour index).
    void properties1(FltDump& out) const;
    void properties2(FltDump& out) const;

    uint16_t colorNameIndex = 0;
    uint16_t flags = 0;
    double Xcoordinate = 0;
    double Ycoordinate = 0;
    double Zcoordinate = 0;
    float vertexNormal[3] = {};  // kinds 69 and 70
    float texture[2] = {};       // u, v; kinds 70 and 71
    uint8_t packedColor[4] = {};  // file order: alpha, blue, green, red
    int32_t vertexColorIndex = 0;
    int32_t trailing = 0;  // kinds 69 and 70, from revision 1580

protected:
    // Decodes the head, then the packed colour at colorOffset followed by the colour index
    // and, when the kind has it, the trailing word.
    void decodeHead(const FltBytes& in);
    void decodeTail(const FltBytes& in, size_t colorOffset, bool hasTrailing);
    void dumpNormal(FltDump& out) const;
    void dumpTexture(FltDump& out) const;
};

// Vertex with colour and normal, opcode 69, 56 bytes.
class FltRecordVertexColorNormal : public FltRecordVertexColor {
public:
    explicit FltRecordVertexColorNormal(unsigned int length) : FltRecordVertexColor(length) {}
    int getOpcode() const override { return 69; }
    const char* getHeading() const override { return "\n VERTEX COLOR NORMAL RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;
};

// Vertex with colour, normal and texture coordinates, opcode 70, 64 bytes.
class FltRecordVertexColorNormalUv : public FltRecordVertexColor {
public:
    explicit FltRecordVertexColorNormalUv(unsigned int length) : FltRecordVertexColor(length) {}
    int getOpcode() const override { return 70; }
    const char* getHeading() const override { return "\n VERTEX COLOR NORMAL UV RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;
};

// Vertex with colour and texture coordinates, opcode 71, 48 bytes.
class FltRecordVertexColorUv : public FltRecordVertexColor {
public:
    explicit FltRecordVertexColorUv(unsigned int length) : FltRecordVertexColor(length) {}
    int getOpcode() const override { return 71; }
    const char* getHeading() const override { return "\n VERTEX COLOR UV (TEXTURE) RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;
};

// The palette offsets of a vertex list. A face has 3 or 4 vertices, and a large database
// nearly as many vertex lists as faces: up to four offsets live in the record itself, only
// longer lists take an array of their own. The array's address is kept in the same words
// (copied, not a pointer member) so that the record stays 32 bytes.
class FltVertexOffsets {
public:
    static constexpr size_t kInline = 4;

    FltVertexOffsets() = default;
    ~FltVertexOffsets() { release(); }
    FltVertexOffsets(const FltVertexOffsets&) = delete;
    FltVertexOffsets& operator=(const FltVertexOffsets&) = delete;

    // Makes the list n offsets long, every one zero.
    void assign(size_t n)
    {
        release();
        if (n > kInline) {
            int32_t* array = new int32_t[n]();
            std::memcpy(words_, &array, sizeof array);
        } else {
            std::memset(words_, 0, sizeof words_);
        }
        count_ = static_cast<uint32_t>(n);
    }
    size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }
    int32_t* data() { return count_ > kInline ? heap() : words_; }
    const int32_t* data() const { return count_ > kInline ? heap() : words_; }
    int32_t operator[](size_t i) const { return data()[i]; }
    const int32_t* begin() const { return data(); }
    const int32_t* end() const { return data() + count_; }

private:
    int32_t* heap() const
    {
        int32_t* array;
        std::memcpy(&array, words_, sizeof array);
        return array;
    }
    void release()
    {
        if (count_ > kInline) delete[] heap();
        count_ = 0;
    }
    static_assert(sizeof(int32_t*) <= kInline * sizeof(int32_t), "an address fits in the inline words");

    uint32_t count_ = 0;
    int32_t words_[kInline] = {};
};

// Vertex list record, opcode 72, variable length: the palette offsets of a face's vertices,
// one 32-bit word each from offset 4.
class FltRecordVertexList : public PrimaryFltRecord {
public:
    explicit FltRecordVertexList(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 72; }
    const char* getHeading() const override { return "\n VERTEX LIST RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    FltVertexOffsets offsets;
};

// Morph vertex list record, opcode 89, variable length: pairs of palette offsets (the 0% and
// the 100% vertex). One pair per 4-byte word, the second value n bytes (not words) after the
// first: kept on purpose, so the list holds twice the pairs the record stores.
class FltRecordMorphVertexList : public PrimaryFltRecord {
public:
    explicit FltRecordMorphVertexList(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 89; }
    const char* getHeading() const override { return "\n MORPH VERTEX LIST RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    std::vector<std::pair<int32_t, int32_t>> offsets;
};

// Old vertex record, opcode 7, 20 bytes (24 with texture coordinates): integer coordinates,
// stored directly under a face in files before revision 14.
class FltRecordOldVertex : public PrimaryFltRecord {
public:
    explicit FltRecordOldVertex(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 7; }
    const char* getHeading() const override { return "\n OLD VERTEX RECORD (OBSOLETE)"; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t Xcoordinate = 0;
    int32_t Ycoordinate = 0;
    int32_t Zcoordinate = 0;
    float texture[2] = {};  // only when the length is exactly 24
    bool hasTexture = false;
};

// Old vertex with colour, opcode 8, 20 bytes (28 with texture coordinates).
class FltRecordOldVertexColor : public PrimaryFltRecord {
public:
    explicit FltRecordOldVertexColor(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 8; }
    const char* getHeading() const override { return "\n OLD VERTEX COLOR RECORD (OBSOLETE)"; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t Xcoordinate = 0;
    int32_t Ycoordinate = 0;
    int32_t Zcoordinate = 0;
    uint8_t hardEdgeFlag = 0;
    uint8_t shadingFlag = 0;
    uint16_t colorIndex = 0;
    float texture[2] = {};  // only when the length is exactly 28
    bool hasTexture = false;
};

// Old vertex with colour and normal, opcode 9, 32 bytes (40 with texture coordinates).
class FltRecordOldVertexColorNormal : public PrimaryFltRecord {
public:
    explicit FltRecordOldVertexColorNormal(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 9; }
    const char* getHeading() const override { return "\n OLD VERTEX COLOR NORMAL RECORD (OBSOLETE)"; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t Xcoordinate = 0;
    int32_t Ycoordinate = 0;
    int32_t Zcoordinate = 0;
    uint8_t hardEdgeFlag = 0;
    uint8_t shadingFlag = 0;
    uint16_t colorIndex = 0;
    int32_t vertexNormalScaled[3] = {};
    float texture[2] = {};  // only when the length is exactly 40
    bool hasTexture = false;
};
