// Bounding volume records: the dumps are pinned by the golden log; the misspelt label is
// kept on purpose.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordBoundingVolume.h"

TEST(BoundingVolumeCylinder, readsRadiusAndHeightAndKeepsTheMisspeltLabel)
{
    FltRecordBytes cylinder(106, 24);
    cylinder.f64(8, 2).f64(16, 40);
    auto c = decodeRecord<FltRecordBoundingVolumeCylinder>(cylinder);
    ASSERT_TRUE(c);
    EXPECT_EQ(c->radius, 2.0);
    EXPECT_EQ(c->heitght, 40.0);
    EXPECT_EQ(fieldsOf(*c), "radius: 2\nheitght: 40\n");
    EXPECT_EQ(decodeRecord<FltRecordBoundingVolumeCylinder>(FltRecordBytes(106, 20))->heitght, 0.0);
}
