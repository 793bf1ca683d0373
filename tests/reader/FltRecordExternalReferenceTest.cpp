// External reference and extension attribute records.
#include <gtest/gtest.h>

#include <cstring>

#include "RecordTestSupport.h"
#include "reader/FltRecordExternalReference.h"

TEST(ExternalReferenceRecord, dumpsThePathAndSevenOverrideLinesThenAnEmptyLine)
{
    FltRecordBytes bytes(63, 216);
    bytes.chars(4, "./sub/house.flt", 200).i32(204, 3).u32(208, 0xC0000000u);
    auto ref = decodeRecord<FltRecordExternalReference>(bytes);
    ASSERT_TRUE(ref);
    EXPECT_STREQ(ref->asciiPath, "./sub/house.flt");
    EXPECT_EQ(ref->reserved1, 3);
    EXPECT_EQ(dumpOf(*ref),
              "\n EXTERNAL REFERENCE RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 63  Length: 216 --\n"
              "asciiPath: ./sub/house.flt\nFlags: \n"
              "      Color palette override: 1\n"
              "      Material palette override: 1\n"
              "      Texture and texture mapping palette override: 0\n"
              "      Line style palette override: 0\n"
              "      Sound palette override: 0\n"
              "      Light source palette override: 0\n"
              "      Light point palette override: 0\n"
              "\n");
}

TEST(ExternalReferenceRecord, pathFillingAll200BytesIsTerminated)
{
    const std::string path(200, 'p');
    FltRecordBytes bytes(63, 216);
    bytes.chars(4, path, 200).u32(204, 0x41414141u);  // 'AAAA' right after the path
    auto ref = decodeRecord<FltRecordExternalReference>(bytes);
    EXPECT_EQ(std::strlen(ref->asciiPath), 200u);
    EXPECT_EQ(std::string(ref->asciiPath), path);
    EXPECT_EQ(fieldsOf(*ref).substr(0, 11 + 200 + 1), "asciiPath: " + path + "\n");
}

TEST(ExternalReferenceRecord, wordAt212KeepsOnlyItsLowHalf)
{
    FltRecordBytes bytes(63, 216);
    bytes.i16(212, 0x0102).i16(214, 0x0304);
    EXPECT_EQ(decodeRecord<FltRecordExternalReference>(bytes)->reserved2, 0x0304);
}

TEST(ExternalReferenceRecord, recordCutInsideThePathKeepsWhatIsThere)
{
    FltRecordBytes bytes(63, 12);
    bytes.chars(4, "abcdefgh", 8);
    auto ref = decodeRecord<FltRecordExternalReference>(bytes);
    EXPECT_STREQ(ref->asciiPath, "abcdefgh");
    EXPECT_EQ(ref->flags, 0);
    EXPECT_EQ(ref->reserved2, 0);
}

TEST(ExtensionAttributeRecord, keepsTheBytesAfterOffset24AsItsData)
{
    FltRecordBytes bytes(100, 30);
    bytes.chars(4, "ext", 8).chars(12, "siteABCD", 8).u8(20, 9).u8(21, 3).u16(22, 40000).chars(24, "\x01\x02xyz\xff", 6);
    auto ext = decodeRecord<FltRecordExtensionAttribute>(bytes);
    ASSERT_TRUE(ext);
    EXPECT_STREQ(ext->idSite, "siteABCD");
    EXPECT_EQ(ext->reserved, 9);
    ASSERT_EQ(ext->dataLength, 6u);
    EXPECT_EQ(std::string(ext->data, ext->dataLength), std::string("\x01\x02xyz\xff", 6));
    EXPECT_EQ(dumpOf(*ext),
              "\n EXTENSION ATTRIBUTE RECORD \n  (ANCILLARY_RECORD)\n-- Opcode: 100  Length: 30 --\n"
              "idASCII: ext\nidSite: siteABCD\nrevision: 3\nrecordCode: 40000\n");
}

TEST(ExtensionAttributeRecord, recordOf24BytesOrLessHasNoData)
{
    auto exact = decodeRecord<FltRecordExtensionAttribute>(FltRecordBytes(100, 24));
    EXPECT_EQ(exact->dataLength, 0u);
    EXPECT_EQ(exact->data, nullptr);

    FltRecordBytes cut(100, 16);
    cut.chars(4, "short", 8).chars(12, "ab", 4);
    auto shortOne = decodeRecord<FltRecordExtensionAttribute>(cut);
    EXPECT_EQ(shortOne->dataLength, 0u);
    EXPECT_STREQ(shortOne->idSite, "ab");
    EXPECT_EQ(shortOne->recordCode, 0);
}
