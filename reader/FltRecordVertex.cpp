// Vertex palette, vertex records, vertex list and morph vertex list: decoding and dump.
#include "reader/FltRecordVertex.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {

// Number of 4-byte words after the header; a record of 4 bytes or less has none.
size_t wordsAfterHeader(unsigned int length) { return length > 4 ? (length - 4) >> 2 : 0; }

}  // namespace

void FltRecordVertexPalette::decode(const FltBytes& in) { vertexPaletteTotalLength = in.i32(4); }

void FltRecordVertexPalette::dumpFields(FltDump& out) const
{
    out.i32("vertexPaletteTotalLength: ", vertexPaletteTotalLength);
}

// ---- Current vertex kinds ----

void FltRecordVertexColor::decodeHead(const FltBytes& in)
{
    colorNameIndex = in.u16(4);
    flags = in.u16(6);
    Xcoordinate = in.f64(8);
    Ycoordinate = in.f64(16);
    Zcoordinate = in.f64(24);
}

void FltRecordVertexColor::decodeTail(const FltBytes& in, size_t colorOffset, bool hasTrailing)
{
    in.packedColor(colorOffset, packedColor);
    vertexColorIndex = formatRevision >= 1540 ? in.i32(colorOffset + 4) : -1;
    if (hasTrailing && formatRevision > 1579) trailing = in.i32(colorOffset + 8);
}

void FltRecordVertexColor::decode(const FltBytes& in)
{
    decodeHead(in);
    decodeTail(in, 32, false);
}

void FltRecordVertexColorNormal::decode(const FltBytes& in)
{
    decodeHead(in);
    in.f32s(32, vertexNormal, 3);
    decodeTail(in, 44, true);
}

void FltRecordVertexColorNormalUv::decode(const FltBytes& in)
{
    decodeHead(in);
    in.f32s(32, vertexNormal, 3);
    in.f32s(44, texture, 2);
    decodeTail(in, 52, true);
}

void FltRecordVertexColorUv::decode(const FltBytes& in)
{
    decodeHead(in);
    in.f32s(32, texture, 2);
    decodeTail(in, 40, false);
}

void FltRecordVertexColor::properties1(FltDump& out) const
{
    out.u16("colorNameIndex: ", colorNameIndex)
        .flag("flags: Start Hard Edge: ", flags & 0x8000u)
        .flag("         Normal frozen: ", flags & 0x4000u)
        .flag("              No Color: ", flags & 0x2000u)
        .flag("          Packed Color: ", flags & 0x1000u)
        .f64("Xcoordinate: ", Xcoordinate)
        .f64("Ycoordinate: ", Ycoordinate)
        .f64("Zcoordinate: ", Zcoordinate);
}

void FltRecordVertexColor::properties2(FltDump& out) const
{
    out.byteFraction("packedColor: alpha=", packedColor[0])
        .byteFraction("              blue=", packedColor[1])
        .byteFraction("             green=", packedColor[2])
        .byteFraction("               red=", packedColor[3])
        .i32("vertexColorIndex: ", vertexColorIndex);
}

void FltRecordVertexColor::dumpNormal(FltDump& out) const
{
    out.f64("vertexNormal: i=", vertexNormal[0])
        .f64("              j=", vertexNormal[1])
        .f64("              k=", vertexNormal[2]);
}

void FltRecordVertexColor::dumpTexture(FltDump& out) const
{
    out.f64("texture: u=", texture[0]).f64("         v=", texture[1]);
}

void FltRecordVertexColor::dumpFields(FltDump& out) const
{
    properties1(out);
    properties2(out);
}

void FltRecordVertexColorNormal::dumpFields(FltDump& out) const
{
    properties1(out);
    dumpNormal(out);
    properties2(out);
}

void FltRecordVertexColorNormalUv::dumpFields(FltDump& out) const
{
    properties1(out);
    dumpNormal(out);
    dumpTexture(out);
    properties2(out);
}

void FltRecordVertexColorUv::dumpFields(FltDump& out) const
{
    properties1(out);
    dumpTexture(out);
    properties2(out);
}

// ---- Vertex lists ----

// Nearly one per face: with the offsets inline the record takes 32 bytes and no array.
static_assert(sizeof(void*) != 8 || sizeof(FltRecordVertexList) == 32, "a vertex list record stays 32 bytes");

void FltRecordVertexList::decode(const FltBytes& in)
{
    const size_t n = wordsAfterHeader(length);
    offsets.assign(n);
    int32_t* values = offsets.data();
    for (size_t i = 0; i < n; ++i) values[i] = in.i32(4 + 4 * i);
}

void FltRecordVertexList::dumpFields(FltDump& out) const
{
    out.text("Offset: ");
    for (int32_t offset : offsets) out.num(offset).text("  ");
    out.nl();
}

void FltRecordMorphVertexList::decode(const FltBytes& in)
{
    offsets.clear();
    const size_t n = wordsAfterHeader(length);
    offsets.reserve(n);
    // n pairs from n words, the second value n bytes after the first: kept on purpose. The
    // later second values lie past the record and read as zero; they are read through a
    // view of their own, since reading past the end is this layout's design, not damage.
    const FltBytes shifted(in.data(), in.size());
    for (size_t i = 0; i < n; ++i) offsets.emplace_back(in.i32(4 + 4 * i), shifted.i32(4 + n + 4 * i));
}

void FltRecordMorphVertexList::dumpFields(FltDump& out) const
{
    out.text("Offset: ");
    for (const auto& pair : offsets) out.text("(").num(pair.first).text(",").num(pair.second).text(")  ");
    out.nl();
}

// ---- Old vertex kinds ----

namespace {

// The three old kinds share their head (integer coordinates), the colour fields of kinds
// 8 and 9, and texture coordinates in the last 8 bytes of a record of exactly the longer
// length.
template <class Record>
void decodeOldHead(const FltBytes& in, Record& r)
{
    r.Xcoordinate = in.i32(4);
    r.Ycoordinate = in.i32(8);
    r.Zcoordinate = in.i32(12);
}

template <class Record>
void decodeOldColor(const FltBytes& in, Record& r)
{
    r.hardEdgeFlag = in.u8(16);
    r.shadingFlag = in.u8(17);
    r.colorIndex = in.u16(18);
}

template <class Record>
void decodeOldTexture(const FltBytes& in, Record& r, unsigned int lengthWithTexture)
{
    r.hasTexture = r.getLength() == lengthWithTexture;
    if (r.hasTexture) in.f32s(lengthWithTexture - 8, r.texture, 2);
}

template <class Record>
void dumpOldHead(FltDump& out, const Record& r)
{
    out.i32("Xcoordinate: ", r.Xcoordinate).i32("Ycoordinate: ", r.Ycoordinate).i32("Zcoordinate: ", r.Zcoordinate);
}

template <class Record>
void dumpOldColor(FltDump& out, const Record& r)
{
    out.chr("hardEdgeFlag: ", static_cast<char>(r.hardEdgeFlag))
        .chr("shadingFlag: ", static_cast<char>(r.shadingFlag))
        .u16("colorIndex : ", r.colorIndex);
}

template <class Record>
void dumpOldTexture(FltDump& out, const Record& r)
{
    if (r.hasTexture) out.f64("texture: u=", r.texture[0]).f64("         v=", r.texture[1]);
}

}  // namespace

void FltRecordOldVertex::decode(const FltBytes& in)
{
    decodeOldHead(in, *this);
    decodeOldTexture(in, *this, 24);
}

void FltRecordOldVertex::dumpFields(FltDump& out) const
{
    dumpOldHead(out, *this);
    dumpOldTexture(out, *this);
}

void FltRecordOldVertexColor::decode(const FltBytes& in)
{
    decodeOldHead(in, *this);
    decodeOldColor(in, *this);
    decodeOldTexture(in, *this, 28);
}

void FltRecordOldVertexColor::dumpFields(FltDump& out) const
{
    dumpOldHead(out, *this);
    dumpOldColor(out, *this);
    dumpOldTexture(out, *this);
}

void FltRecordOldVertexColorNormal::decode(const FltBytes& in)
{
    decodeOldHead(in, *this);
    decodeOldColor(in, *this);
    vertexNormalScaled[0] = in.i32(20);
    vertexNormalScaled[1] = in.i32(24);
    vertexNormalScaled[2] = in.i32(28);
    decodeOldTexture(in, *this, 40);
}

void FltRecordOldVertexColorNormal::dumpFields(FltDump& out) const
{
    dumpOldHead(out, *this);
    dumpOldColor(out, *this);
    out.i32("vertexNormalScaled: i=", vertexNormalScaled[0])
        .i32("                    j=", vertexNormalScaled[1])
        .i32("                    k=", vertexNormalScaled[2]);
    dumpOldTexture(out, *this);
}
