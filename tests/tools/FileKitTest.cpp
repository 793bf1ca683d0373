// libSoFLTFileKit.so: an unmodified Coin application opens .flt databases with
// SoDB::readAll once the module is on its library path.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"
#include "ToolRunner.h"

TEST(FileKitTest, readAll_opensDatabasesThroughTheKitOnlyAndRefusesDamagedOnes)
{
    const auto runHost = [](const std::string& file, const char* libraryPath, const char* classic = "0") {
        return runProgram(QETZFLT_HOST_PATH, {file}, {{"LD_LIBRARY_PATH", libraryPath}, {"QETZFLT_CLASSIC", classic}});
    };
    ScratchDir dir;
    const std::string demo = writeDemoDatabase(dir);
    const RunResult r = runHost(demo, QETZFLT_KIT_DIR);
    ASSERT_EQ(r.status, 0) << r.err;
    // As authored: textures found beside the database, by their whole path.
    for (const std::string& part : {std::string("SoFLTFileKit {"), std::string("DEF root Separator"),
                                    std::string("DEF terrain Separator"), std::string("IndexedFaceSet"),
                                    "filename \"" + dir.file("textures/grass.rgb") + "\"",
                                    std::string("bounding box: -45 -45 0 45 45 ")})
        EXPECT_TRUE(contains(r.out, part)) << part;
    EXPECT_FALSE(contains(r.err, "grass.rgb")) << r.err;
    // Classic on request: texture names stay as the library gives them; the kit loads them
    // from the database's folder.
    const RunResult classic = runHost(demo, QETZFLT_KIT_DIR, "1");
    ASSERT_EQ(classic.status, 0) << classic.err;
    EXPECT_TRUE(contains(classic.out, "filename \"textures/grass.rgb\"")) << classic.out;
    EXPECT_FALSE(contains(classic.err, "grass.rgb")) << classic.err;

    const RunResult without = runHost(demo, "");
    EXPECT_EQ(without.status, 1);
    EXPECT_FALSE(contains(without.out, "SoFLTFileKit"));

    writeFile(dir.file("text.flt"), "not an OpenFlight database at all");
    const RunResult damaged = runHost(dir.file("text.flt"), QETZFLT_KIT_DIR);
    EXPECT_EQ(damaged.status, 1) << damaged.out;
    EXPECT_TRUE(contains(damaged.err, "cannot read")) << damaged.err;
}
