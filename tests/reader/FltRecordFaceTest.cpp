// The face record: both sides of the revision 1500 branch and the colour indices (a face cut
// short: FltBytesTest).
#include <gtest/gtest.h>

#include <vector>

#include "RecordTestSupport.h"
#include "reader/FltRecordFace.h"

TEST(FaceRecord, offsets64To79AreReadFromRevision1500AndOlderFilesTakeThePrimaryColour)
{
    // The golden log pins the fields before offset 64; its face's name index and transparency
    // are 0, which cannot show them read unsigned.
    FltRecordBytes r(5, 80);
    r.u16(20, 40000).u16(40, 65535).abgr(60, 0x80, 0x10, 0x20, 0x30);
    r.i16(64, 11).i16(66, 12).i32(68, 1234).i32(72, -1).i16(76, 13).i16(78, 14);
    auto face = decodeRecord<FltRecordFace>(r, 1500);
    EXPECT_EQ((std::vector<int>{face->colorNameIndex, face->transparency}), (std::vector<int>{40000, 65535}));
    EXPECT_EQ((std::vector<int>{face->textureMappingIndex, face->reserved5, face->primaryColorIndex,
                                face->alternateColorIndex, face->reserved6, face->reserved7}),
              (std::vector<int>{11, 12, 1234, -1, 13, 14}));
    EXPECT_TRUE(
        endsWith(fieldsOf(*face), "\ntextureMappingIndex: 11\nprimaryColorIndex: 1234\nalternateColorIndex: -1\n"));

    // Both colour indices take the primary colour, not the alternate name index (5).
    auto old = decodeRecord<FltRecordFace>(r, 1499);
    EXPECT_EQ((std::vector<int>{old->textureMappingIndex, old->reserved5, old->primaryColorIndex,
                                old->alternateColorIndex, old->reserved6, old->reserved7}),
              (std::vector<int>{-1, 0, 40000, 40000, 0, 0}));
    EXPECT_TRUE(endsWith(fieldsOf(*old), "red=0.188235\nprimaryColorIndex: 40000\n"));
}
