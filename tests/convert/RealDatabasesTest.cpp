// Real databases written by other tools: every database converts exactly as recorded, its
// written scene reads back with the same faces, and in those whose faces all name vertices
// of their own file every face record reaches a face set.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoVertexProperty.h>

#include <cstdint>
#include <set>

#include "ConvertSupport.h"
#include "reader/FltOpcode.h"

namespace {

// 64-bit FNV-1a, as sixteen hexadecimal digits.
std::string digest(const std::string& text)
{
    uint64_t h = 1469598103934665603ull;
    for (unsigned char c : text) h = (h ^ c) * 1099511628211ull;
    char hex[17];
    std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(h));
    return hex;
}

std::string replaceAll(std::string text, const std::string& from, const std::string& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

}  // namespace

// The scene, log and messages of every database, in a copy of the folder (references and
// textures resolve as in the original), held against digests recorded from an earlier
// revision: any change to the classic conversion of a real file shows here. With
// QETZFLT_UPDATE_GOLDEN set, the digests are recorded again.
TEST(RealDatabases, everyDatabaseConvertsAsRecordedAndReadsBack)
{
    ScratchDir copy;
    if (copyOfSharedData(copy).empty())
        GTEST_SKIP() << "../shared/data is absent: the real databases are not in this checkout";
    const std::vector<std::string> databases = databasesBelow(copy.path().string());
    ASSERT_FALSE(databases.empty());
    const std::set<std::string> withoutReferences = {"osg/scene-15.7.flt", "osg/scene-16.1.flt",
                                                     "osg/spider-15.7.flt", "real/switch/switch.flt"};
    std::string actual;
    for (const std::string& name : databases) {
        SCOPED_TRACE(name);
        Converted c(Converted::File{copy.file(name)});
        const std::string all = sceneText(c.root) + '\0' + c.log() + '\0' + c.messageLines() + '\0' +
                                std::to_string(c.root->getRefCount());
        actual += digest(replaceAll(all, copy.path().string(), "DATA")) + "  " + name + "\n";
        SoSeparator* back = readBack(c.root);
        ASSERT_NE(back, nullptr);
        // Every face, and the palette's vertex properties under their names.
        EXPECT_EQ(facesInFaceSets(back), facesInFaceSets(c.root));
        for (SoVertexProperty* property : findAll<SoVertexProperty>(c.root))
            EXPECT_NE(findNamed(back, property->getName().getString()), nullptr) << property->getName().getString();
        back->unref();
        if (!withoutReferences.count(name)) continue;
        EXPECT_EQ(facesInFaceSets(c.root), ParsedPalettes(readFile(copy.file(name))).count(FltOpcode::Face));
        EXPECT_EQ(c.root->getRefCount(), 1);
        for (size_t i = 0; i < c.messages.size(); ++i) EXPECT_LT(c.levels[i], 3) << c.messages[i];
    }
    // One line per database: a difference names the file.
    compareWithGolden(actual, QETZFLT_SOURCE_DIR "/tests/golden/real-databases.digests");
}
