// The switch record and its mask words.
#include <gtest/gtest.h>

#include <cstdint>

#include "RecordTestSupport.h"
#include "reader/FltRecordSwitch.h"

namespace {
// A switch record of 28 bytes plus the given words, with counts as stated (not derived).
FltRecordBytes switchBytes(int32_t masks, int32_t wordsPerMask, std::initializer_list<uint32_t> words)
{
    FltRecordBytes bytes(96, 28 + 4 * words.size());
    bytes.chars(4, "sw", 8).i32(16, 1).i32(20, masks).i32(24, wordsPerMask);
    size_t offset = 28;
    for (uint32_t w : words) {
        bytes.u32(offset, w);
        offset += 4;
    }
    return bytes;
}

const char* const kWord5 = "00000000000000000000000000000101";
const char* const kWordTop = "10000000000000000000000000000000";
}  // namespace

TEST(SwitchRecord, printsOneNumberedLinePerWordNotPerMask)
{
    auto twoMasks = decodeRecord<FltRecordSwitch>(switchBytes(2, 1, {5u, 0x80000000u}));
    ASSERT_TRUE(twoMasks);
    ASSERT_EQ(twoMasks->maskWordCount, 2u);
    EXPECT_EQ(twoMasks->masks[0], 5u);
    EXPECT_EQ(twoMasks->masks[1], 0x80000000u);
    EXPECT_EQ(dumpOf(*twoMasks), std::string("\n SWITCH RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 96  Length: 36 --\n"
                                             "idASCII: sw\nindexOfCurrentMask: 1\nnumberOfMasks: 2\n"
                                             "numberOf32BitWordsPerMask: 1\n"
                                             "Mask number 0: \n") +
                                     kWord5 + "\nMask number 1: \n" + kWordTop + "\n");

    auto twoWords = decodeRecord<FltRecordSwitch>(switchBytes(1, 2, {5u, 0x80000000u}));
    EXPECT_EQ(twoWords->maskWordCount, 2u);
    EXPECT_EQ(fieldsOf(*twoWords), std::string("idASCII: sw\nindexOfCurrentMask: 1\nnumberOfMasks: 1\n"
                                               "numberOf32BitWordsPerMask: 2\nMask number 0: \n") +
                                       kWord5 + "\nMask number 1: \n" + kWordTop + "\n");
}

TEST(SwitchRecord, zeroOrNegativeProductKeepsNoWord)
{
    auto none = decodeRecord<FltRecordSwitch>(switchBytes(0, 1, {7u}));
    EXPECT_EQ(none->maskWordCount, 0u);
    EXPECT_NE(none->masks, nullptr);  // an empty array, still owned
    EXPECT_EQ(fieldsOf(*none), "idASCII: sw\nindexOfCurrentMask: 1\nnumberOfMasks: 0\nnumberOf32BitWordsPerMask: 1\n");

    auto negative = decodeRecord<FltRecordSwitch>(switchBytes(-2, 3, {7u, 7u}));
    EXPECT_EQ(negative->numberOfMasks, -2);
    EXPECT_EQ(negative->maskWordCount, 0u);
}

TEST(SwitchRecord, countsBeyondTheRecordKeepOnlyTheWordsItHolds)
{
    // 2^31 - 1 masks of one word announced, two words present: the counts are kept as read,
    // the array is bounded by the record.
    auto absurd = decodeRecord<FltRecordSwitch>(switchBytes(INT32_MAX, 1, {1u, 2u}));
    EXPECT_EQ(absurd->numberOfMasks, INT32_MAX);
    ASSERT_EQ(absurd->maskWordCount, 2u);
    EXPECT_EQ(absurd->masks[1], 2u);
    EXPECT_NE(fieldsOf(*absurd).find("numberOfMasks: 2147483647\n"), std::string::npos);
    EXPECT_EQ(fieldsOf(*absurd).find("Mask number 2"), std::string::npos);

    // And the other way round: words beyond the announced ones are not masks.
    auto extra = decodeRecord<FltRecordSwitch>(switchBytes(1, 1, {9u, 10u, 11u}));
    ASSERT_EQ(extra->maskWordCount, 1u);
    EXPECT_EQ(extra->masks[0], 9u);
}

TEST(SwitchRecord, maskCountsWhoseProductWrapsIn32Bits_keepEveryWordPresent)
{
    // 65537 x 65535 wraps to -1 in 32 bits and 0x7FFFFFFF x 0x7FFFFFFF wraps to 1; computed
    // in full, both far exceed the three words present.
    EXPECT_EQ(decodeRecord<FltRecordSwitch>(switchBytes(65537, 65535, {1u, 2u, 3u}))->maskWordCount, 3u);
    EXPECT_EQ(decodeRecord<FltRecordSwitch>(switchBytes(INT32_MAX, INT32_MAX, {1u, 2u, 3u}))->maskWordCount, 3u);
}

TEST(SwitchRecord, recordCutShortOfItsFirstWordHasNoMasks)
{
    FltRecordBytes cut(96, 30);  // two bytes of a word only
    cut.i32(20, 1).i32(24, 1).u16(28, 0xFFFF);
    auto sw = decodeRecord<FltRecordSwitch>(cut);
    EXPECT_EQ(sw->maskWordCount, 0u);

    FltRecordBytes header(96, 22);  // cut inside the mask count
    header.i16(20, 0x0001);
    auto tiny = decodeRecord<FltRecordSwitch>(header);
    EXPECT_EQ(tiny->numberOfMasks, 0);
    EXPECT_EQ(tiny->maskWordCount, 0u);
}
