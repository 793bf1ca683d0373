// The degree-of-freedom record: its name and flag lines (the golden log pins the rest).
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordDOF.h"

TEST(DOFRecord, eachFlagBitDrivesItsOwnLine)
{
    const char* labels[] = {"x translation", "y translation", "z translation", "pitch rotation", "roll rotation",
                            "yaw rotation",  "x scale",       "y scale",       "z scale"};
    for (int bit = 0; bit < 9; ++bit) {
        FltRecordBytes bytes(14, 384);
        bytes.chars(4, "dof_0001", 8).u32(376, 0x80000000u >> bit);
        auto dof = decodeRecord<FltRecordDOF>(bytes);
        EXPECT_STREQ(dof->idASCII, "dof_0001");  // all eight characters, still terminated
        const std::string dump = fieldsOf(*dof);
        for (int other = 0; other < 9; ++other) {
            const std::string line = std::string("     ") + labels[other] + " is limited: " + (other == bit ? "1" : "0");
            EXPECT_NE(dump.find(line + "\n"), std::string::npos) << "bit " << bit << ": " << line;
        }
    }
}
