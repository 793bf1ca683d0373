// The switch record and its mask words.
#include <gtest/gtest.h>

#include <cstdint>

#include "RecordTestSupport.h"
#include "reader/FltRecordSwitch.h"

namespace {
// A switch record of 28 bytes plus the given words, with counts as stated (not derived).
FltRecordBytes switchBytes(int32_t masks, int32_t wordsPerMask, const std::vector<uint32_t>& words)
{
    FltRecordBytes bytes(96, 28 + 4 * words.size());
    bytes.chars(4, "sw", 8).i32(16, 1).i32(20, masks).i32(24, wordsPerMask);
    for (size_t i = 0; i < words.size(); ++i) bytes.u32(28 + 4 * i, words[i]);
    return bytes;
}
}  // namespace

TEST(SwitchRecord, keepsTheCountsAsReadAndOnlyTheAnnouncedWordsTheRecordHolds)
{
    struct Case {
        int32_t masks, wordsPerMask;
        std::vector<uint32_t> words;
        size_t kept;
    };
    const Case cases[] = {
        {2, 1, {5u, 0x80000000u}, 2}, {1, 2, {5u, 0x80000000u}, 2}, {1, 1, {9u, 10u, 11u}, 1},
        {0, 1, {7u}, 0},              {-2, 3, {7u, 7u}, 0},          {INT32_MAX, 1, {1u, 2u}, 2},
        // 65537 x 65535 wraps to -1 in 32 bits and 0x7FFFFFFF x 0x7FFFFFFF to 1.
        {65537, 65535, {1u, 2u, 3u}, 3}, {INT32_MAX, INT32_MAX, {1u, 2u, 3u}, 3},
    };
    for (const Case& c : cases) {
        auto sw = decodeRecord<FltRecordSwitch>(switchBytes(c.masks, c.wordsPerMask, c.words));
        EXPECT_EQ(sw->numberOfMasks, c.masks);
        EXPECT_EQ(sw->numberOf32BitWordsPerMask, c.wordsPerMask);
        ASSERT_EQ(sw->maskWordCount, c.kept) << c.masks << " x " << c.wordsPerMask;
        ASSERT_NE(sw->masks, nullptr);  // an empty array when no word is kept, still owned
        for (size_t i = 0; i < c.kept; ++i) EXPECT_EQ(sw->masks[i], c.words[i]);
    }
}

TEST(SwitchRecord, printsOneNumberedLinePerWordNotPerMask)
{
    auto twoWords = decodeRecord<FltRecordSwitch>(switchBytes(1, 2, {5u, 0x80000000u}));
    EXPECT_EQ(fieldsOf(*twoWords), "idASCII: sw\nindexOfCurrentMask: 1\nnumberOfMasks: 1\n"
                                   "numberOf32BitWordsPerMask: 2\nMask number 0: \n00000000000000000000000000000101\n"
                                   "Mask number 1: \n10000000000000000000000000000000\n");
}

TEST(SwitchRecord, recordCutShortOfItsFirstWordOrItsCountsHasNoMasks)
{
    FltRecordBytes cut(96, 30);  // two bytes of a word only
    cut.i32(20, 1).i32(24, 1).u16(28, 0xFFFF);
    EXPECT_EQ(decodeRecord<FltRecordSwitch>(cut)->maskWordCount, 0u);

    FltRecordBytes header(96, 22);  // cut inside the mask count
    header.i16(20, 0x0001);
    auto tiny = decodeRecord<FltRecordSwitch>(header);
    EXPECT_EQ(tiny->numberOfMasks, 0);
    EXPECT_EQ(tiny->maskWordCount, 0u);
}
