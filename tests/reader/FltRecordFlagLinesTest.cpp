// Every record with a flags word: each bit drives the dump line labelled for it and no other.
// The golden log shows each record with one flags value only, which cannot tell bits apart.
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "RecordTestSupport.h"

namespace {
std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
    return parts;
}
}  // namespace

TEST(FlagLines, eachFlagBitDrivesTheLineLabelledForIt)
{
    struct Row {
        uint16_t opcode;
        size_t length, offset, bits;  // the flags word: where, and 16 or 32 bits
        const char* labels;           // from the top bit down, '|' apart; empty: the bit has no line
    };
    const Row rows[] = {
        {1, 324, 64, 32, "Save vertex normals|Packed Color mode|CAD View mode"},
        {2, 44, 16, 32,
         "|forward animation|swing animation|bounding box follows|freeze bounding box|default parent|"
         "backward animation"},
        {3, 40, 24, 32, "Use Previous Slant Range|SPT Flag|FreezeCenter (don't recalculate)"},
        {4, 28, 12, 32, "don t display in daylight|at dusk|at night|don t illuminate|flat shaded|group's shadow object"},
        {5, 80, 44, 32, "Terrain|No Color|No Alternate Color|Packed Color|Terrain Culture Cutout|Hidden (not drawn)"},
        {14, 384, 376, 32,
         "x translation is limited|y translation is limited|z translation is limited|pitch rotation is limited|"
         "roll rotation is limited|yaw rotation is limited|x scale is limited|y scale is limited|z scale is limited"},
        {63, 216, 208, 32,
         "Color palette override|Material palette override|Texture and texture mapping palette override|"
         "Line style palette override|Sound palette override|Light source palette override|"
         "Light point palette override"},
        {68, 40, 6, 16, "Start Hard Edge|Normal frozen|No Color|Packed Color"},
        {73, 80, 36, 32, "Use Previous Slant Range||FreezeCenter (don't recalculate)"},
        {91, 88, 80, 32, "doppler|absorption|delay"},
        {101, 64, 24, 32, "enabled|global||export"},
        {111, 156, 140, 32,
         "|no back color||calligraphic proximity occulting|reflective non-color light|randomize intensity|"
         "randomize intensity|randomize intensity|perspective mode|flashing|rotating|rotate counter clockwise||"
         "quality|visible during day|visible during dusk|visible during night"},
    };
    for (const Row& row : rows) {
        const std::vector<std::string> labels = split(row.labels, '|');
        auto dumpWith = [&row](uint32_t flags) {
            FltRecordBytes r(row.opcode, row.length);
            if (row.bits == 16) r.u16(row.offset, static_cast<uint16_t>(flags));
            else r.u32(row.offset, flags);
            return split(fieldsOf(*decodeRecord<FltRecord>(r)), '\n');
        };
        const std::vector<std::string> plain = dumpWith(0);
        for (size_t b = 0; b < row.bits; ++b) {
            SCOPED_TRACE(testing::Message() << "opcode " << row.opcode << ", bit " << row.bits - 1 - b);
            const std::vector<std::string> flagged = dumpWith(1u << (row.bits - 1 - b));
            ASSERT_EQ(flagged.size(), plain.size());
            std::vector<std::string> changed;
            for (size_t i = 0; i < plain.size(); ++i)
                if (flagged[i] != plain[i]) changed.push_back(flagged[i]);
            const std::string label = b < labels.size() ? labels[b] : "";
            if (label.empty()) {
                EXPECT_EQ(changed, std::vector<std::string>{});
                continue;
            }
            ASSERT_EQ(changed.size(), 1u);
            EXPECT_NE(changed[0].find(label + ": "), std::string::npos) << changed[0];
        }
    }
}
