// The sound palette: its two subtypes, absurd counts and its continuation through the factory.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordSound.h"

namespace {

// Sound palette header (subtype 1): maxNumber, actualNumber, totalLength, then room for
// `room` entries of 12 bytes (index, reserved, fileNameOffset) from offset 32.
FltRecordBytes soundHeader(int32_t actualNumber, size_t room, int32_t totalLength = 0)
{
    FltRecordBytes r(93, 32 + 12 * room);
    r.i32(4, 1).i32(8, 16).i32(12, actualNumber).i32(16, totalLength);
    return r;
}

// Sound palette data (subtype 2): the announced length, then the names as given.
FltRecordBytes soundData(int32_t dataLength, const std::string& names)
{
    FltRecordBytes r(93, 12 + names.size());
    r.i32(4, 2).i32(8, dataLength).chars(12, names, names.size());
    return r;
}

}  // namespace

TEST(SoundPalette, headerKeysTheEntriesByIndexAndOtherSubtypesDecodeNothingFurther)
{
    FltRecordBytes r = soundHeader(3, 3, 24);
    r.i32(32, 5).i32(40, 12).i32(44, 2).i32(52, 0);
    r.i32(56, 5).i32(64, 18);  // a repeated index keeps the later entry
    auto palette = decodeRecord<FltRecordSoundPalette>(r);
    EXPECT_EQ(palette->soundEntries.size(), 2u);
    EXPECT_EQ(palette->soundEntries.at(5).fileNameOffset, 18);
    EXPECT_EQ(palette->packedData, nullptr);

    r.i32(4, 3);
    auto other = decodeRecord<FltRecordSoundPalette>(r);
    EXPECT_EQ(other->maxNumber | other->dataLength, 0);
    EXPECT_TRUE(other->soundEntries.empty());
    EXPECT_EQ(fieldsOf(*other), "subType : 3\n");
}

TEST(SoundPalette, dataKeepsThePackedNamesWithAClosingNulAndDumpsThemOnOneLine)
{
    auto palette = decodeRecord<FltRecordSoundPalette>(soundData(12, std::string("a.wav\0bb.wav\0", 13)));
    ASSERT_EQ(palette->packedDataSize, 12u);
    EXPECT_EQ(std::string(palette->packedData, 13), std::string("a.wav\0bb.wav\0", 13));
    EXPECT_EQ(fieldsOf(*palette), "subType : 2\ndataLength : 12\npackedData : a.wav bb.wav\n");
}

TEST(SoundPalette, absurdCountsAreBoundedByTheRecord)
{
    // Two entries held, two billion announced; a negative count; a header cut inside its entry.
    FltRecordBytes many = soundHeader(0x7FFFFFFF, 2, 0x7FFFFFFF);
    many.i32(32, 1).i32(44, 2);
    EXPECT_EQ(decodeRecord<FltRecordSoundPalette>(many)->soundEntries.size(), 2u);
    EXPECT_TRUE(decodeRecord<FltRecordSoundPalette>(soundHeader(-5, 2))->soundEntries.empty());
    FltRecordBytes cut(93, 40);
    cut.i32(4, 1).i32(12, 1).i32(32, 9);
    EXPECT_TRUE(decodeRecord<FltRecordSoundPalette>(cut)->soundEntries.empty());

    // The data announces far more than it holds, or a negative length.
    auto overlong = decodeRecord<FltRecordSoundPalette>(soundData(0x7FFFFFFF, "x.wav"));
    EXPECT_EQ(overlong->dataLength, 0x7FFFFFFF);
    ASSERT_EQ(overlong->packedDataSize, 5u);
    EXPECT_STREQ(overlong->packedData, "x.wav");
    auto negative = decodeRecord<FltRecordSoundPalette>(soundData(-1, "x.wav"));
    ASSERT_NE(negative->packedData, nullptr);
    EXPECT_EQ(negative->packedDataSize, 0u);
    EXPECT_STREQ(negative->packedData, "");
}

TEST(SoundPalette, continuationDecodesIntoTheSameObjectAndReplacesItsPart)
{
    Flt_15_7_CreationVisitor visitor;
    visitor.setDumpStream(nullptr);
    FltRecordBytes header = soundHeader(1, 1, 8);
    header.i32(32, 4).i32(40, 0);
    std::unique_ptr<FltRecord> first(feed(visitor, header.bytes()));
    auto* palette = dynamic_cast<FltRecordSoundPalette*>(first.get());
    ASSERT_NE(palette, nullptr);

    EXPECT_EQ(feed(visitor, soundData(8, std::string("one.wav\0", 8)).bytes()), palette);
    EXPECT_EQ(palette->subType, 2);
    EXPECT_STREQ(palette->packedData, "one.wav");
    EXPECT_EQ(palette->soundEntries.at(4).fileNameOffset, 0);  // the header's part stays

    // A second data record replaces the names held (the sanitizer build checks the old
    // buffer is freed), and a shorter one must not leave the longer one's tail behind.
    EXPECT_EQ(feed(visitor, soundData(2, "z").bytes()), palette);
    EXPECT_EQ(palette->packedDataSize, 1u);
    EXPECT_STREQ(palette->packedData, "z");
}
