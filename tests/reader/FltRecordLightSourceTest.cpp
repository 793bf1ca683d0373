// The light source palette: its name follows two reserved words, and its irregular labels
// are the established ones, kept on purpose.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordLightSource.h"

TEST(LightSourcePalette, readsTheNameAfterTheReservedWordsAndKeepsTheIrregularLabels)
{
    FltRecordBytes r(102, 240);
    r.i32(4, 7).chars(8, "RESERVED", 8).chars(16, "sun", 20).f32(52, 2).f32(56, 1.25f).f32(132, 1.5f);
    auto light = decodeRecord<FltRecordLightSourcePalette>(r);
    ASSERT_TRUE(light);
    EXPECT_STREQ(light->lightSourceName, "sun");
    const std::string dump = fieldsOf(*light);
    EXPECT_EQ(dump.find("paletteIndex: 7\nlightSourceName: sun\nambientRed: 0\n"), 0u);
    EXPECT_NE(dump.find("\nambientAlpha : 2\ndiffuseRed : 1.25\ndiffuseGreen : 0\n"), std::string::npos);
    EXPECT_NE(dump.find("\nspotExponentialDropoffTerm : 1.5\n"), std::string::npos);
}
