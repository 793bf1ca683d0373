// External reference and extension attribute records.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordExternalReference.h"

TEST(ExternalReferenceRecord, pathFillingAll200BytesIsTerminated)
{
    // 'AAAA' right after the path; the flags' place is pinned by the flag lines test.
    const std::string path(200, 'p');
    FltRecordBytes bytes(63, 216);
    bytes.chars(4, path, 200).u32(204, 0x41414141u);
    auto ref = decodeRecord<FltRecordExternalReference>(bytes);
    EXPECT_EQ(std::string(ref->asciiPath), path);
}

TEST(ExtensionAttributeRecord, keepsTheBytesAfterOffset24AsItsDataAndNoneWhenShorter)
{
    // The golden log pins the fields before offset 24.
    auto ext = decodeRecord<FltRecordExtensionAttribute>(FltRecordBytes(100, 30).chars(24, "\x01\x02xyz\xff", 6));
    ASSERT_EQ(ext->dataLength, 6u);
    EXPECT_EQ(std::string(ext->data, ext->dataLength), std::string("\x01\x02xyz\xff", 6));

    for (size_t length : {24, 16}) {
        auto none = decodeRecord<FltRecordExtensionAttribute>(FltRecordBytes(100, length));
        EXPECT_EQ(none->dataLength, 0u) << length;
        EXPECT_EQ(none->data, nullptr) << length;
    }
}
