// The face record: both sides of the revision 1500 branch, flags, colours, short records.
#include <gtest/gtest.h>

#include <vector>

#include "RecordTestSupport.h"
#include "reader/FltRecordFace.h"

namespace {

// An 80-byte face with a distinct value in every field, offsets 64 to 79 included.
FltRecordBytes fullFace()
{
    FltRecordBytes r(5, 80);
    r.chars(4, "face0001", 8).i32(12, 77).i16(16, -2).i8(18, 1).i8(19, 1).u16(20, 40000).u16(22, 5);
    r.i8(24, 9).i8(25, 2).i16(26, -1).i16(28, 3).i16(30, 4).i16(32, 6).i16(34, 7).i32(36, -8);
    r.u16(40, 65535).u8(42, 200).u8(43, 250).u32(44, 0x84000000u).u8(48, 3).u8(49, 1).u16(50, 2).i32(52, 3);
    r.abgr(56, 255, 0, 0, 255).abgr(60, 0x80, 0x10, 0x20, 0x30);
    r.i16(64, 11).i16(66, 12).i32(68, 1234).i32(72, -1).i16(76, 13).i16(78, 14);
    return r;
}

const char* const kDumpUpToTheColourIndices =
    "idField: face0001\nIRColorCode: 77\nrelativePriority: -2\ndrawType: 1\ntextureWhite: 1\n"
    "colorNameIndex: 40000\nalternateColorNameIndex: 5\ntemplateBillboard: 2\n"
    "detailTexturePatternIndex: -1\ntexturePatternIndex: 3\nmaterialIndex: 4\n"
    "surfaceMaterialCode: 6\nidFeature: 7\nIRMaterialCode: -8\ntransparency: 65535\n"
    "LODGenerationControl: 200\nlineStyleIndex: 250\n"
    "flags:           Terrain: 1\n                No Color: 0\n      No Alternate Color: 0\n"
    "            Packed Color: 0\n  Terrain Culture Cutout: 0\n      Hidden (not drawn): 1\n"
    "lightMode: 3\n"
    "packedColor: alpha=1\n              blue=0\n             green=0\n               red=1\n"
    "alternatePackedColor: alpha=0.501961\n                       blue=0.0627451\n"
    "                      green=0.12549\n                        red=0.188235\n";

}  // namespace

TEST(FaceRecord, revision1500ReadsTheWholeLayout)
{
    auto face = decodeRecord<FltRecordFace>(fullFace(), 1500);
    ASSERT_TRUE(face);
    EXPECT_EQ(dumpOf(*face), std::string("\n FACE RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 5  Length: 80 --\n") +
                                 kDumpUpToTheColourIndices +
                                 "textureMappingIndex: 11\nprimaryColorIndex: 1234\nalternateColorIndex: -1\n");
    // The fields the dump leaves out, and a colour byte by byte in file order.
    EXPECT_EQ((std::vector<int>{face->reserved1, face->reserved2, face->reserved3, face->reserved4, face->reserved5,
                                face->reserved6, face->reserved7, face->alternatePackedColor[0]}),
              (std::vector<int>{9, 1, 2, 3, 12, 13, 14, 0x80}));
}

TEST(FaceRecord, revision1499IgnoresOffsets64To79AndTakesTheDefaults)
{
    auto face = decodeRecord<FltRecordFace>(fullFace(), 1499);
    EXPECT_EQ(face->textureMappingIndex, -1);
    EXPECT_EQ(face->reserved5 | face->reserved6 | face->reserved7, 0);
    // Both colour indices are the primary colour, not the alternate name index (5).
    EXPECT_EQ(face->primaryColorIndex, 40000);
    EXPECT_EQ(face->alternateColorIndex, 40000);
    EXPECT_EQ(fieldsOf(*face), std::string(kDumpUpToTheColourIndices) + "primaryColorIndex: 40000\n");
}

TEST(FaceRecord, flagHelpersReadTheirOwnBitsOnly)
{
    FltRecordBytes bytes(5, 80);
    bytes.u32(44, 0x50000000u);
    auto face = decodeRecord<FltRecordFace>(bytes);
    EXPECT_TRUE(face->isNoColor() && face->isPackedColor());
    EXPECT_FALSE(face->isHidden());
    bytes.u32(44, 0x04000000u);
    face = decodeRecord<FltRecordFace>(bytes);
    EXPECT_TRUE(face->isHidden());
    EXPECT_FALSE(face->isNoColor() || face->isPackedColor());
}

TEST(FaceRecord, shortRecordReadsTheMissingFieldsAsZero)
{
    // A 15.x face cut after its transparency: nothing past the 42 bytes is touched (the
    // sanitizer build checks), the rest reads as zero.
    FltRecordBytes bytes(5, 42);
    bytes.chars(4, "cut", 8).u16(40, 7);
    auto face = decodeRecord<FltRecordFace>(bytes, 1570);
    EXPECT_EQ(face->transparency, 7);
    EXPECT_EQ(face->flags | face->textureMappingIndex | face->primaryColorIndex | face->packedColor[3], 0);
}
